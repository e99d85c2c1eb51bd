# Sourced by the scripts: installs the Debian packages that are missing.

require_packages() {
  local package missing=()
  for package in "$@"; do
    dpkg-query -W -f '${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0

  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "These packages are missing: ${missing[*]}" >&2
      echo "Run as root, or install sudo, or install them yourself: apt-get install ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "Installing ${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

if ! command -v apt-get >/dev/null; then
  require_packages() {
    echo "Not a Debian system: make sure that you have what these packages hold: $*" >&2
  }
fi

build_packages=(g++ cmake ninja-build pkg-config)
tool_packages=(libcli11-dev libsndfile1-dev)
test_packages=(libgtest-dev libmpfr-dev)
manual_packages=(python3 python3-sphinx python3-myst-parser python3-sphinx-rtd-theme)
python_packages=(mypy python3-numpy python3-pip python3-pytest python3-scipy python3-setuptools python3-wheel)
