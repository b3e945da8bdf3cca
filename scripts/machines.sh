# Compiling for other machines than this one, and running the tests there, emulated. Sourced by scripts/soak.

# A line each: Debian's name of the machine, the compilers' name, the emulator, what it is there to show.
machines() {
  cat <<'LIST'
i386 i686-linux-gnu qemu-i386 pointers and sizes of 32 bits
arm64 aarch64-linux-gnu qemu-aarch64 kernels for NEON
s390x s390x-linux-gnu qemu-s390x big-endian numbers
LIST
}

machine_needs() {
  test_needs
  echo 'qemu-user qemu-s390x'
  local triplet
  while read -r _ triplet _; do
    echo "g++-$triplet $triplet-g++"
  done < <(machines)
}

# apt-get for another machine, with a state of its own in FOLDER: the system here does not hear of it.
apt_for() {
  local machine=$1 folder=$2
  shift 2
  apt-get -qq -o Dir::State="$folder" -o Dir::State::status="$folder/status" -o Dir::State::lists="$folder/lists" \
    -o Dir::Cache="$folder/cache" -o APT::Architecture="$machine" -o APT::Architectures::="$machine" \
    -o APT::Sandbox::User=root "$@"
}

# The libraries of that machine, unpacked into FOLDER/usr as they would lie in its root.
unpack_libraries() {
  local machine=$1 folder=$2 multiarch=$3 package
  local packages=(zlib1g zlib1g-dev liburiparser1 liburiparser-dev libutf8proc2 libutf8proc-dev libgtest-dev libgmock-dev
    libjansson4 libjansson-dev)
  [ "$(cat "$folder/whole" 2>/dev/null)" != "${packages[*]}" ] || return 0
  rm -rf "$folder"
  mkdir -p "$folder/apt/lists/partial" "$folder/apt/cache/archives/partial" "$folder/packages"
  touch "$folder/apt/status"
  apt_for "$machine" "$folder/apt" update || true  # some sources do not have that machine
  (cd "$folder/packages" && apt_for "$machine" "$folder/apt" download "${packages[@]}") || return 1
  for package in "$folder"/packages/*.deb; do
    dpkg-deb -x "$package" "$folder"
  done
  cp -a "$folder/lib/." "$folder/usr/lib/"
  ln -sf libz.so.1 "$folder/usr/lib/$multiarch/libz.so"  # the package's link leads to the real root
  echo "${packages[*]}" > "$folder/whole"
}

# Tests that start programs, have signals cut calls short, or look at the memory of their process: the
# emulator stands in between.
not_emulated='RunScript*:FindScriptRunner*:Environment.IsFollowedOnlyByProgramsWithTheirCallersRights'
not_emulated+=':SystemLog.WritesTheWholeTextToASlowReader:RecordPool.ReleaseGivesBackEveryChunk'
not_emulated+=':TreeBuilder.BuildsTheSameTreeWhereHugePagesAreRefused'

# Builds the unit tests for that machine and runs them there; prints what fails. Leaves their number in `passed`.
test_machine() {
  local machine=$1 triplet=$2 qemu=$3 folder="$root/build/machines/$1" libraries multiarch result=0
  passed=0
  multiarch=$("$triplet-gcc" -print-multiarch)
  libraries="$folder/tree/usr/lib/$multiarch"
  mkdir -p "$folder"
  { unpack_libraries "$machine" "$folder/tree" "$multiarch" &&
    cmake -S "$root" -B "$folder/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$root/cmake/OtherMachine.cmake" \
      -DCMAKE_BUILD_TYPE=Release -DTAVREL_TRIPLET="$triplet" -DTAVREL_QEMU="$qemu" \
      -DTAVREL_TREE="$folder/tree" -DTAVREL_LIBRARIES="$libraries" \
      -DTAVREL_BUILD_HOST=OFF -DTAVREL_BUILD_BENCH=OFF -DTAVREL_WARNINGS_AS_ERRORS=ON &&
    cmake --build "$folder/build" --target unit_tests; } >"$folder.log" 2>&1 ||
    { tail -n 30 "$folder.log"; return 1; }
  "$qemu" -L "/usr/$triplet" -E LD_LIBRARY_PATH="$libraries:/usr/$triplet/lib" \
    "$folder/build/tests/unit_tests" --gtest_filter="-$not_emulated" >"$folder.log" 2>&1 || result=$?
  passed=$(grep -c '^\[       OK \]' "$folder.log")
  [ "$result" -eq 0 ] || grep -B 12 '^\[  FAILED  \]' "$folder.log" || tail -n 5 "$folder.log"
  return "$result"
}
