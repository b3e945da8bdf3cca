# The checks of what is installed, for scripts/soak: sourced by it, not run.

packages_needs() {
  cat <<'LIST'
dpkg-dev dpkg-shlibdeps
lintian lintian
mmdebstrap mmdebstrap
nodejs node
npm npm
LIST
}

# The checkout once more, in a folder with another name, without what git does not know.
copy_checkout() {
  rm -rf "$1"
  mkdir -p "$1"
  (cd "$root" && git ls-files -z --cached --others --exclude-standard | tar -c --null -T - --ignore-failed-read) |
    tar -x -C "$1"
}

# Fails, and says which, when a package of the second folder is not that of the first, byte for byte.
same_packages() {
  local package result=0
  for package in "$1"/*.deb; do
    cmp "$package" "$2/${package##*/}" || result=1
  done
  return "$result"
}

# What npm needs to know of this machine in the new system: where packages come from, and whom to trust.
write_npm_settings() {
  echo "export npm_config_registry='$(npm config get registry)'" >"$1/settings"
  : >"$1/certificates"
  [ -z "${NODE_EXTRA_CA_CERTS:-}" ] || cp "$NODE_EXTRA_CA_CERTS" "$1/certificates"
}

# In a Debian that has never seen them: installed by apt, used, built upon, and removed without a trace.
install_in_a_new_system() {
  local packages=$1 suite
  suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
  write_npm_settings "$folder"
  mmdebstrap --quiet --variant=apt --format=null --dpkgopt=force-unsafe-io \
    --include=gcc,g++,libc6-dev,pkgconf,python3,ca-certificates,nodejs,npm,man-db \
    --customize-hook='mkdir "$1/new"' \
    --customize-hook="copy-in $(printf '"%s" ' "$packages"/*.deb) /new" \
    --customize-hook="copy-in '$folder/settings' '$folder/certificates' '$root/samples/home' /new" \
    --customize-hook="copy-in '$root/scripts/use_packages' /new" \
    --customize-hook='chroot "$1" sh /new/use_packages' \
    "$suite" - >"$folder/packages.log" 2>&1 || { tail -n 40 "$folder/packages.log" >&2; return 1; }
  sed -n 's/^figure: //p' "$folder/packages.log"
}

run_packages() {
  local first="$root/build/package/packages" second="$folder/a folder of another name" result=0 errors same='the same'
  [ "$(id -u)" -eq 0 ] || die "The packages are tried in a new system, which takes root: sudo scripts/soak packages"
  "$root/scripts/package" >/dev/null 2>&1 || die "scripts/package failed; see build/package.log"
  mkdir -p "$folder"
  copy_checkout "$second"
  "$second/scripts/package" >/dev/null 2>&1 || die "scripts/package failed in $second; see its build/package.log"
  same_packages "$first" "$second/build/package/packages" || { result=1; same='not the same'; }
  errors=$(lintian --allow-root --fail-on error --tag-display-limit 0 "$first"/*.deb 2>&1) || { echo "$errors"; result=1; }
  counted="$(find "$first" -maxdepth 1 -name '*.deb' | wc -l) packages, $same from two folders; lintian: "
  counted+="$(grep -c '^E:' <<<"$errors") errors, $(grep -c '^W:' <<<"$errors") warnings"
  counted+=$'\n'"in a new system: $(install_in_a_new_system "$first")" || result=1
  rm -rf "$second"
  return "$result"
}

# A project of somebody else's, with this one within it, built and run as a whole.
run_embedded() {
  local build="$folder/embedded"
  rm -rf "$build"
  { cmake -G Ninja -S "$root/tests/embedding/project" -B "$build" -DTAVREL="$root" && cmake --build "$build"; } \
    >"$folder.log" 2>&1 || die "The build failed; its output is in build/soak.log"
  counted="the host of another project lists $(HOME="$root/samples/home" "$build/somebody" | wc -l) playlists"
  HOME="$root/samples/home" "$build/somebody" | grep -q '^ *[1-9][0-9]*  Music$'
}
