#include "companion/output/complaints.h"

#include <format>

#include "companion/output/counted.h"

namespace companion {

namespace {

constexpr std::size_t MostPrinted = 10;

}  // namespace

void Complaints::Add(std::string_view kind, std::string const& text) {
  if (++m_counts[std::string(kind)] <= MostPrinted || m_areAllPrinted) {
    m_console.Complain(text);
  }
}

void Complaints::Finish() {
  for (auto const& [kind, count] : m_counts) {
    if (count > MostPrinted && !m_areAllPrinted) {
      m_console.Complain(std::format("{}: and {} more; --list names all", kind,
                                     WithSeparators(count - MostPrinted)));
    }
  }
}

}  // namespace companion
