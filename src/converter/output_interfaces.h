// What report writers offer to those who drive them.
#pragma once

#include <string_view>

namespace TesselConverter {

/// Takes records: Start once, Write for each, Finish once.
template <typename Record>
class IOutput {
 public:
  virtual void Start() = 0;
  /// False when the record was refused, which is no error.
  virtual bool Write(Record const& record) = 0;
  virtual void Finish() = 0;

 protected:
  ~IOutput() = default;
};

class INameable {
 public:
  /// The name by which users choose the format, such as "json".
  [[nodiscard]] virtual std::string_view FormatName_() const = 0;

 protected:
  ~INameable() = default;
};

class IFileClearable {
 public:
  /// Flushes and closes the output; removes the file if it is empty and that is asked for.
  virtual void ClearOutput(bool removeIfEmpty) = 0;
  /// Flushes and closes the output and removes the file, whatever is in it.
  virtual void HardClearOutput() = 0;

 protected:
  ~IFileClearable() = default;
};

class IHasPathType {
 public:
  /// A number for how the format writes paths, which only its readers interpret.
  [[nodiscard]] virtual int GetFormatPathType() const = 0;

 protected:
  ~IHasPathType() = default;
};

class IOutputIfoProvider : public INameable, public IFileClearable, public IHasPathType {
 protected:
  ~IOutputIfoProvider() = default;
};

}  // namespace TesselConverter
