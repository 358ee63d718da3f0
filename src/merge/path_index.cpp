#include "merge/path_index.h"

#include <bit>
#include <cstddef>
#include <functional>

PathIndex::PathIndex(FileSet const& files) : m_places(std::bit_ceil(2 * files.size() + 1)) {
  for (File const& file : files) {
    m_places[PlaceOf(file.path.native())] = &file;
  }
}

File const* PathIndex::Find(std::string_view path) const {
  return m_places[PlaceOf(path)];
}

std::size_t PathIndex::PlaceOf(std::string_view path) const {
  const std::size_t mask = m_places.size() - 1;
  std::size_t place = std::hash<std::string_view>()(path) & mask;
  while (m_places[place] != nullptr && m_places[place]->path.native() != path) {
    place = (place + 1) & mask;
  }
  return place;
}
