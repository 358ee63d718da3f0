# shellcheck shell=bash disable=SC2154  # The script that sources this sets scratch.
# Makes what is given away of the project in the current directory; scripts/package sources this, and
# sets SOURCE_DATE_EPOCH, the umask, and $scratch, a directory.
dist=build/dist
declare -A preset_of=([amd64]=package [arm64]=package-arm64)
# Where the Debian packages lie that a program is linked from; / is left out.
declare -A system_of=([amd64]='' [arm64]=$PWD/build/arm64-sysroot)

# make_all: for each processor a Debian package and an archive; their bill of materials, their sums.
make_all() {
  local processor
  version=$(sed -n 's/^ *VERSION \([0-9.]*\)$/\1/p' CMakeLists.txt)
  rm -rf "$dist"
  mkdir -p "$dist"
  : >"$scratch/linked"
  for processor in "${processors[@]}"; do
    build "${preset_of[$processor]}"
    make_package "$processor"
    make_archive "$processor"
  done
  say "Writing the bill of materials and the sums"
  /usr/bin/python3 packaging/bill_of_materials.py "$version" "$dist"/* <"$scratch/linked" \
    >"$scratch/bill"
  mv "$scratch/bill" "$dist/qln-fp-cleaner-$version.spdx.json"
  (cd "$dist" && sha256sum -- * >"$scratch/sums" && mv "$scratch/sums" SHA256SUMS)
}

# make_package PROCESSOR: the Debian package.
make_package() {
  local folder=$PWD/build/${preset_of[$1]} file
  rm -f "$folder"/*.deb
  quietly "cpack failed" cpack --config "$folder/CPackConfig.cmake" -B "$folder"
  file=$(echo "$folder"/*.deb)
  mv "$file" "$dist"
  note_linked "$1" "${file##*/}" "$(linked_packages "$1" "$folder"/*.map)"
}

# make_archive PROCESSOR: the static programs with all that belongs to them.
make_archive() {
  local folder=build/${preset_of[$1]} name=qln-fp-cleaner-$version-linux-$1
  local tree=$scratch/archives/$name documents packages
  rm -rf "$tree"
  cmake --install "$folder" --prefix "$tree" --strip >/dev/null
  cmake --install "$folder" --prefix "$tree" --strip --component static >/dev/null
  documents=$tree/share/doc/qln-fp-cleaner
  cp packaging/INSTALL packaging/copyright "$documents"
  packages=$(linked_packages "$1" "$folder"/static/*.map)
  note_linked "$1" "$name.tar.gz" "$packages"
  copy_licences "$1" "$documents/licences" "$packages"
  tar -c -C "$scratch/archives" --sort=name --mtime="@$SOURCE_DATE_EPOCH" --owner=0 --group=0 \
    --numeric-owner --mode=u=rwX,go=rX "$name" | gzip -9n >"$dist/$name.tar.gz"
}

# linked_packages PROCESSOR MAP...: the Debian packages of which parts are in the programs: the
# linker's archives and object files, by its maps, and the two libraries that are headers alone.
linked_packages() {
  local system
  system=$(realpath "${system_of[$1]:-/}")
  {
    sed -n 's|^LOAD \(/.*\.[ao]\)$|\1|p' "${@:2}" | sort -u | xargs -d '\n' realpath |
      sed "s|^${system%/}/|/|" | sort -u | xargs -d '\n' \
        dpkg-query --admindir="${system%/}/var/lib/dpkg" --search | sed 's/: .*//'
    printf '%s\n' libargs-dev nlohmann-json3-dev
  } | sort -u
}

# note_linked PROCESSOR FILE PACKAGES: says into $scratch/linked that these are linked into FILE.
note_linked() {
  local package
  for package in $3; do
    # shellcheck disable=SC2016  # The dollar signs are for dpkg-query.
    printf '%s %s\n' "$2" "$(dpkg-query --admindir="${system_of[$1]}/var/lib/dpkg" --show \
      --showformat '${Package} ${Architecture} ${Version} ${source:Package} ${source:Version}' \
      "$package")"
  done >>"$scratch/linked"
}

# copy_licences PROCESSOR FOLDER PACKAGES: what Debian says of their copyright, with the licences that
# this refers to.
copy_licences() {
  local package
  mkdir -p "$2"
  for package in $3; do
    package=${package%:*}
    cp -L "${system_of[$1]}/usr/share/doc/$package/copyright" "$2/$package"
  done
  grep -ohE '/usr/share/common-licenses/[A-Za-z]+(-[0-9.]*[0-9])?' "$2"/* | sort -u |
    xargs cp -L -t "$2"
}
