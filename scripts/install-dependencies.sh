#!/usr/bin/env bash
# Installs the Debian packages that a task needs and whose content is missing. Needs root only if something is missing.
# usage: scripts/install-dependencies.sh TASK …   (the tasks are the keys of `packages` below)
set -euo pipefail

# release -> version of the compiler in its package "clang", whose run-time library is a package with that version in its
# name. Other releases get the package without a version, which not all have.
declare -A clang_versions=([debian-12]=14 [debian-13]=19 [ubuntu-24.04]=18)
release=$(source /etc/os-release 2>/dev/null && echo "${ID:-}-${VERSION_ID:-}" || true)
clang_version=${clang_versions[$release]:-}
clang_runtime=libclang-rt-${clang_version:+$clang_version-}dev
clang_folder=$(clang++ -print-resource-dir 2>/dev/null || echo /nowhere)

# package -> a program or file that shows that the content is present, even if it did not come from the package
declare -A evidence=(
  [g++]=g++ [cmake]=cmake [ninja-build]=ninja [libcli11-dev]=/usr/include/CLI/CLI.hpp
  [nlohmann-json3-dev]=/usr/include/nlohmann/json.hpp [prometheus]=promtool [help2man]=help2man [zsh]=zsh [fish]=fish [man-db]=man
  [python3-prometheus-client]=/usr/lib/python3/dist-packages/prometheus_client/openmetrics/parser.py
  [python3-jsonschema]=/usr/lib/python3/dist-packages/jsonschema/validators.py
  [libgtest-dev]=/usr/include/gtest/gtest.h [libgmock-dev]=/usr/include/gmock/gmock.h
  [locales]=/usr/share/i18n/locales/de_DE [libbenchmark-dev]=/usr/include/benchmark/benchmark.h
  [clang-format-19]=clang-format-19 [clang-tidy]=run-clang-tidy [git]=git [python3]='/usr/lib/python3*/unittest/__init__.py'
  [qt6-base-dev]='/usr/include/*/qt6/QtDBus/QDBusConnection' [qt6-declarative-dev]='/usr/include/*/qt6/QtQuick/QQuickView'
  [libxcb1-dev]=/usr/include/xcb/xcb.h [libxcb-shape0-dev]=/usr/include/xcb/shape.h [libxcb-xinput-dev]=/usr/include/xcb/xinput.h
  [libxcb-xtest0-dev]=/usr/include/xcb/xtest.h [pkg-config]=pkg-config [qt6-svg-dev]='/usr/include/*/qt6/QtSvg/QSvgRenderer'
  [qml6-module-qtquick]='/usr/lib/*/qt6/qml/QtQuick/qmldir' [libgl-dev]=/usr/include/GL/gl.h
  [qml6-module-qtquick-templates]='/usr/lib/*/qt6/qml/QtQuick/Templates/qmldir'
  [qml6-module-qtquick-window]='/usr/lib/*/qt6/qml/QtQuick/Window/qmldir'
  [qml6-module-qtqml]='/usr/lib/*/qt6/qml/QtQml/qmldir' [qml6-module-qtqml-models]='/usr/lib/*/qt6/qml/QtQml/Models/qmldir'
  [qt6-declarative-dev-tools]=/usr/lib/qt6/bin/qmllint [qml6-module-qttest]='/usr/lib/*/qt6/qml/QtTest/qmldir'
  [qml6-module-qtqml-workerscript]='/usr/lib/*/qt6/qml/QtQml/WorkerScript/qmldir'
  [xvfb]=xvfb-run [xauth]=xauth [dbus-daemon]=dbus-run-session [libglib2.0-bin]=gdbus [xdotool]=xdotool
  [imagemagick]=import [xfwm4]=xfwm4 [xfce4-panel]=xfce4-panel [lxqt-panel]=lxqt-panel [trayer]=trayer [x11-utils]=xwininfo
  [xclip]=xclip [python3]=python3 [python3-pyatspi]=/usr/lib/python3/dist-packages/pyatspi/__init__.py
  [python3-pytest]=/usr/lib/python3/dist-packages/pytest/__init__.py [gir1.2-gtk-3.0]='/usr/lib/*/girepository-1.0/Gtk-3.0.typelib'
  [fonts-quicksand]=/usr/share/fonts/truetype/quicksand/Quicksand-Bold.ttf [fonts-inter]='/usr/share/fonts/*/inter/*' [fonts-dejavu-core]=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
  [sway]=sway [waybar]=waybar [xwayland]=Xwayland [qt6-wayland]='/usr/lib/*/qt6/plugins/platforms/libqwayland-generic.so'
  [i3lock]=i3lock [gnome-shell]=gnome-shell [gnome-settings-daemon]=/usr/libexec/gsd-xsettings
  [gnome-shell-extension-appindicator]='/usr/share/gnome-shell/extensions/ubuntu-appindicators@ubuntu.com/extension.js'
  [plasma-desktop]=/usr/share/plasma/shells/org.kde.plasma.desktop/metadata.json [plasma-workspace]=plasmashell
  [kwin-x11]=kwin_x11 [x11-xserver-utils]=xrdb [marco]=marco [mate-panel]=mate-panel
  [mate-settings-daemon]=mate-settings-daemon [mate-session-manager]=mate-session [cinnamon]=cinnamon
  [xapp-sn-watcher]=/usr/libexec/xapps/sn-watcher/xapp-sn-watcher
  [orca]=orca [libsensors-dev]=/usr/include/sensors/sensors.h [libsystemd-dev]=/usr/include/systemd/sd-bus.h [strace]=strace [bubblewrap]=bwrap
  [npm]=npm [clang-19]=clang++-19 [qemu-user-static]=qemu-aarch64-static [llvm]=llvm-config [libc++1-19]='/usr/lib/*/libc++.so.1'
  [clang]=clang++ [lld]=ld.lld [$clang_runtime]="$clang_folder/lib/linux/libclang_rt.fuzzer-*.a"
  [systemd]=systemd-analyze [prometheus-node-exporter]=prometheus-node-exporter
  [crossbuild-essential-arm64]=aarch64-linux-gnu-g++ [libc6:arm64]=/lib/ld-linux-aarch64.so.1
  [libstdc++6:arm64]='/usr/lib/aarch64-linux-gnu/libstdc++.so.6' [libgtest-dev:arm64]='/usr/lib/aarch64-linux-gnu/libgtest.a'
  [libgmock-dev:arm64]='/usr/lib/aarch64-linux-gnu/libgmock.a' [libsensors-dev:arm64]='/usr/lib/aarch64-linux-gnu/libsensors.so'
  [qt6-base-dev:arm64]='/usr/include/aarch64-linux-gnu/qt6/QtDBus/QDBusConnection'
  [qt6-declarative-dev:arm64]='/usr/include/aarch64-linux-gnu/qt6/QtQuick/QQuickView'
  [qt6-svg-dev:arm64]='/usr/include/aarch64-linux-gnu/qt6/QtSvg/QSvgRenderer'
  [libgl-dev:arm64]=/usr/lib/aarch64-linux-gnu/libGL.so [libxcb1-dev:arm64]=/usr/lib/aarch64-linux-gnu/libxcb.so
  [libxcb-shape0-dev:arm64]=/usr/lib/aarch64-linux-gnu/libxcb-shape.so
  [libxcb-xinput-dev:arm64]=/usr/lib/aarch64-linux-gnu/libxcb-xinput.so
  [file]=file [dpkg-dev]=dpkg-shlibdeps [lintian]=lintian [appstream]=appstreamcli
  [desktop-file-utils]=desktop-file-validate [debootstrap]=debootstrap
  [liblayershellqtinterface-dev]='/usr/lib/*/cmake/LayerShellQt/LayerShellQtConfig.cmake' [libwayland-dev]=/usr/include/wayland-client.h
)
# Debian 12 has a package of this name for Qt 5.
layer_shell=
[[ $release != debian-13 ]] || layer_shell="liblayershellqtinterface-dev libwayland-dev"
xcb="libxcb1-dev libxcb-shape0-dev libxcb-xinput-dev pkg-config"
qt="qt6-base-dev qt6-declarative-dev qt6-svg-dev libgl-dev qml6-module-qtquick qml6-module-qtquick-templates qml6-module-qtqml-workerscript"
build="g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libsystemd-dev help2man $qt $xcb $layer_shell"
console_tests="python3 python3-jsonschema python3-prometheus-client prometheus help2man man-db zsh fish systemd"
virtual="xvfb xauth dbus-daemon libglib2.0-bin xdotool imagemagick xclip fonts-dejavu-core"
lint="qt6-declarative-dev-tools qml6-module-qtqml qml6-module-qtqml-models"
desktop="$virtual x11-utils x11-xserver-utils python3-pytest python3-pyatspi gir1.2-gtk-3.0 xfwm4 xfce4-panel lxqt-panel trayer
  sway waybar xwayland qt6-wayland i3lock bubblewrap"
desktops="gnome-shell gnome-shell-extension-appindicator gnome-settings-daemon plasma-desktop plasma-workspace kwin-x11
  marco mate-panel mate-settings-daemon mate-session-manager cinnamon xapp-sn-watcher orca"
arm64="libc6:arm64 libstdc++6:arm64 libgtest-dev:arm64 libgmock-dev:arm64 libsensors-dev:arm64 qt6-base-dev:arm64
  qt6-declarative-dev:arm64 qt6-svg-dev:arm64 libgl-dev:arm64 libxcb1-dev:arm64 libxcb-shape0-dev:arm64 libxcb-xinput-dev:arm64"
declare -A packages=(
  [run]="$build"
  [test]="$build fonts-quicksand $lint $console_tests libxcb-xtest0-dev python3 clang lld $clang_runtime qml6-module-qttest qml6-module-qtquick-window libgtest-dev libgmock-dev locales $desktop"
  [virtual-display]="$virtual"
  [desktop]="$desktop"
  [desktops]="$desktop $desktops"
  [check]="$build libxcb-xtest0-dev qml6-module-qttest libgtest-dev libgmock-dev locales libbenchmark-dev clang-format-19 clang-tidy git python3"
  [bench]="$build libbenchmark-dev libsensors-dev strace python3"
  [pictures]="$build libgtest-dev fonts-inter"
  [macos]="$build libgtest-dev libgmock-dev locales git npm python3 qt6-declarative-dev-tools clang $clang_runtime clang-19 llvm libc++1-19 qemu-user-static"
  [fuzz]="$build clang lld $clang_runtime"
  [packages]="$build libsensors-dev file dpkg-dev lintian appstream desktop-file-utils debootstrap zsh git python3"
  [reliability]="bubblewrap strace"
  [debootstrap]="debootstrap"
  [arm64]="$build $arm64 locales libgtest-dev libgmock-dev file dpkg-dev crossbuild-essential-arm64 qemu-user-static"
  [fleet]="$build python3 prometheus prometheus-node-exporter bubblewrap"
)

is_here() {
  case $1 in
    /*) compgen -G "$1" >/dev/null ;;
    *) command -v "$1" >/dev/null ;;
  esac
}

missing=()
for task in "$@"; do
  [[ -n ${packages[$task]:-} ]] || { echo "install-dependencies.sh: unknown task '$task'" >&2; exit 2; }
  for package in ${packages[$task]}; do
    [[ " ${missing[*]} " == *" $package "* ]] || is_here "${evidence[$package]}" || missing+=("$package")
  done
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

as_root=()
[[ $(id -u) -eq 0 ]] || as_root=(sudo)
if ! command -v apt-get >/dev/null || ! command -v "${as_root[0]:-true}" >/dev/null; then
  echo "Please install what these Debian packages hold: ${missing[*]}" >&2
  exit 1
fi
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
