# built_cxx_library PROCESSOR: the two archives of the C++ library, which zig builds when it first links for a system and
# keeps in ZIG_GLOBAL_CACHE_DIR.
built_cxx_library() {
  local archive headers
  for archive in "$ZIG_GLOBAL_CACHE_DIR"/o/*/libc++{,abi}.a; do
    headers=$(llvm-readobj --file-headers "$archive" 2>/dev/null)
    if [[ $headers == *"Arch: $1"* ]]; then echo "$archive"; fi
  done
}
