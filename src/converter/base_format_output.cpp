#include "converter/base_format_output.h"

#include <system_error>

namespace TesselConverter {

namespace fs = std::filesystem;

void BaseFormatOutput::ClearOutput(bool removeIfEmpty) {
  SyncAndClose();
  std::error_code ignored;
  if (m_buffer.File() != nullptr && removeIfEmpty && fs::is_empty(m_outputPath, ignored)) {
    fs::remove(m_outputPath, ignored);
  }
  if (m_buffer.Console() != nullptr) {
    m_buffer.Console()->flush();
  }
}

void BaseFormatOutput::HardClearOutput() {
  SyncAndClose();
  std::error_code ignored;
  fs::remove(m_outputPath, ignored);  // Without an output file the path is empty, and names none.
  if (m_buffer.Console() != nullptr) {
    m_buffer.Console()->flush();
  }
}

void BaseFormatOutput::EmptyFile() {
  if (m_buffer.File() != nullptr) {
    SyncAndClose();  // Before it is opened anew: what the older stream holds comes in front.
    PrepareOutput();
  }
}

void BaseFormatOutput::SyncAndClose() {
  try {
    m_buffer.pubsync();
  } catch (std::ios_base::failure const&) {
    // One of the streams throws when it fails, as its user may have asked of the standard output.
    // The failure is noted here, and what is open is closed all the same.
    m_stream.setstate(std::ios_base::badbit);
  }
  if (m_buffer.File() != nullptr && m_buffer.File()->is_open()) {
    m_buffer.File()->close();
  }
}

}  // namespace TesselConverter
