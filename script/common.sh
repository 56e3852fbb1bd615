# Sourced by the other scripts: goes to the root of the repository and gives build().
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [[ -z ${CMAKE_CXX_COMPILER_LAUNCHER:-} ]] && command -v ccache > /dev/null; then
  export CMAKE_CXX_COMPILER_LAUNCHER=ccache
  export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros,include_file_mtime,include_file_ctime}
fi

# build PRESET TARGET...: configures the preset and builds the targets.
build() {
  local preset=$1
  shift
  # mold links in a fraction of the time.
  local linker=()
  if command -v mold > /dev/null; then
    linker=(-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=mold -DCMAKE_SHARED_LINKER_FLAGS=-fuse-ld=mold)
  fi
  cmake --preset "$preset" "${linker[@]}"
  cmake --build --preset "$preset" --target "$@"
}
