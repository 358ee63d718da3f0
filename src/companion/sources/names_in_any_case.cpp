#include "companion/sources/names_in_any_case.h"

#include <system_error>

#include "companion/sources/foreign_path.h"

namespace companion {

namespace fs = std::filesystem;

std::vector<fs::path> NamesInAnyCase::Find(fs::path const& relative) {
  if (!m_hasLooked) {
    LookAround();
  }
  std::vector<fs::path> found;
  const auto [begin, end] = m_names.equal_range(FoldedCase(relative.native()));
  for (auto name = begin; name != end; ++name) {
    found.push_back(name->second);
  }
  return found;
}

void NamesInAnyCase::LookAround() {
  m_hasLooked = true;
  std::error_code error;
  fs::recursive_directory_iterator entry(m_root, fs::directory_options::skip_permission_denied,
                                         error);
  for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
    std::error_code ignored;
    if (entry->is_regular_file(ignored)) {
      fs::path relative = entry->path().lexically_relative(m_root);
      std::string folded = FoldedCase(relative.native());
      m_names.emplace(std::move(folded), std::move(relative));
    }
  }
}

}  // namespace companion
