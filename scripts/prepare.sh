# Sourced by ./run and ./test: installs what packages.txt lists and configures and builds one preset.

# install_packages: does nothing, and needs no rights, when everything is there.
install_packages() {
    local wanted missing=() package
    wanted=$(grep -v '^#' "$root/packages.txt")
    for package in $wanted; do
        dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || {
            echo "These packages are missing, and installing them needs root or sudo: ${missing[*]}" >&2
            return 1
        }
        as_root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# build PRESET [TARGET...]: quiet unless it fails; the log is build/PRESET.log.
build() {
    local preset=$1 log="$root/build/$1.log"
    shift
    mkdir -p "$root/build"
    local targets=()
    [ $# -gt 0 ] && targets=(--target "$@")
    {
        { [ -f "$root/build/$preset/build.ninja" ] || cmake --preset "$preset"; } &&
            cmake --build --preset "$preset" "${targets[@]}"
    } >"$log" 2>&1 || {
        tail -n 60 "$log" >&2
        echo "The build failed; the whole log is build/$preset.log" >&2
        return 1
    }
}
