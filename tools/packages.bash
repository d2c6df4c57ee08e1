# Debian 12 packages of VELkoro and how they get onto a machine. Sourced by ./run and ./test.

build_packages=(build-essential cmake ninja-build pkg-config ccache
    qt6-base-dev qt6-tools-dev libqt6opengl6-dev libqt6svg6 qt6-qpa-plugins
    libusb-1.0-0-dev libcli11-dev nlohmann-json3-dev
    fonts-dejavu-core)

test_packages=(libgtest-dev libbenchmark-dev clang libclang-rt-14-dev
    xvfb xauth openbox xdotool imagemagick umockdev poppler-utils gpsbabel
    fonts-liberation)

# Installs those of the named packages that are missing; asks for nothing when all are there.
install_packages() {
    if ! command -v dpkg-query >/dev/null; then
        echo "No Debian system: expecting the equivalents of: $*"
        return 0
    fi
    local name missing=()
    for name; do
        # The status "ii " means installed and configured; a removed package is still known.
        if [ "$(dpkg-query -W -f='${db:Status-Abbrev}' "$name" 2>/dev/null)" != "ii " ]; then
            missing+=("$name")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    local root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages; as root: apt-get install ${missing[*]}" >&2
            return 1
        fi
        root=(sudo)
    fi
    echo "Installing ${missing[*]}"
    # Without fresh lists the packages may still be there, so a failed update is not the end.
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C apt-get update ||
        echo "apt-get update failed; trying with the lists that are there" >&2
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C \
        apt-get install -y --no-install-recommends "${missing[@]}"
}

# Configures and builds a preset; the compiler speaks English whatever the locale.
build_preset() {
    LC_ALL=C.UTF-8 cmake --preset "$1" && LC_ALL=C.UTF-8 cmake --build --preset "$1" -j "$(nproc)"
}
