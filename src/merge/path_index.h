// Finding the files of a collection by the text of their paths.
#pragma once

#include <string_view>
#include <vector>

#include "merge/file.h"

/// A hash table of the files that a collection held when the index was made, beside it and not in
/// its records. It finds a file with one comparison of texts, where the collection itself takes one
/// of paths for every level of its tree. Valid as long as no file is taken out of the collection;
/// files that come later are not in it.
class PathIndex {
 public:
  explicit PathIndex(FileSet const& files);

  /// The file whose path has exactly this text. None does not mean that the collection has no such
  /// file: two texts may be one path.
  [[nodiscard]] File const* Find(std::string_view path) const;

 private:
  /// Where the file with the path is, or the empty place where it would be.
  [[nodiscard]] std::size_t PlaceOf(std::string_view path) const;

  /// At least twice as many places as files, and a power of two. A file stands at the place that
  /// the hash of its path says or, if that is taken, at the next one that is free.
  std::vector<File const*> m_places;
};
