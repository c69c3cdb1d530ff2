# Sourced by run, test and bench: installs what is missing and builds.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1

# install_packages GROUP...: what packaging/debian-packages.txt lists for these groups.
install_packages() {
    local groups=" $* " missing=() group package program
    while read -r group package program; do
        [[ $group == "#"* || -z $group || $groups != *" $group "* ]] && continue
        [[ -n $program ]] && command -v "$program" > /dev/null && continue
        dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed ||
            missing+=("$package")
    done < packaging/debian-packages.txt
    [[ ${#missing[@]} -eq 0 ]] && return
    echo "Installing from Debian: ${missing[*]}"
    local apt=(apt-get)
    [[ $(id -u) -eq 0 ]] || apt=(sudo apt-get)
    export DEBIAN_FRONTEND=noninteractive
    "${apt[@]}" -qq update
    # A server that a package brings is for tests on ports of their own: it must not be started here.
    "${apt[@]}" -qq install -y --no-install-recommends -o Dpkg::Use-Pty=0 "${missing[@]}" > /dev/null
}

# build PRESET [TARGET...]
build() {
    local preset=$1
    shift
    local folder=build
    [[ $preset == release ]] || folder=build-$preset
    if [[ ! -f $folder/build.ninja ]]; then
        echo "Configuring $folder"
        cmake --preset "$preset" > "/tmp/zo-configure.$$" || { cat "/tmp/zo-configure.$$"; return 1; }
        rm -f "/tmp/zo-configure.$$"
    fi
    cmake --build "$folder" --target "${@:-all}" -- --quiet
}
