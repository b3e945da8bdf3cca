# The page in a browser, for scripts/soak and scripts/bench. Sourced, not run.

page_needs() {
  cat <<'LIST'
nodejs node
npm npm
chromium chromium
fonts-noto-core /usr/share/fonts/truetype/noto
fonts-noto-cjk /usr/share/fonts/opentype/noto
LIST
}

page_modules="$root/build/page"

# Chromium, and what drives it.
prepare_page() {
  page_needs | install_missing
  mkdir -p "$page_modules"
  npm install --prefix "$page_modules" --no-save --no-audit --no-fund typescript@5 playwright-core@1 axe-core@4 \
    >"$page_modules.log" 2>&1 || die "npm failed; its output is in build/page.log"
  build_page_host >"$page_modules.log" 2>&1 || die "The build failed; its output is in build/page.log"
  export TAVREL="$root/build/release/bin/tavrel" TAVREL_SAMPLE="$root/samples/home"
  export PAGE_MODULES="$page_modules" PAGE_FOLDER="$page_modules/pages" CHROMIUM
  CHROMIUM=$(command -v chromium)
}
build_page_host() {
  (cd "$root" && cmake --preset release -DTAVREL_BUILD_BENCH=ON &&
    cmake --build --preset release --target tavrel_host generate_library)
}

run_page() {
  local output result=0
  prepare_page
  "$page_modules/node_modules/.bin/tsc" -p "$root/host/page/browser" || result=1
  output=$(node --test --test-reporter=tap "$root"/tests/page/browser/*.test.mjs 2>&1) || result=1
  [ "$result" -eq 0 ] || echo "$output"
  mkdir -p "$page_modules/pictures"  # to be looked at; those of docs/page/ are such
  node "$root/tests/page/browser/screenshots.mjs" "$page_modules/pictures" || result=1
  counted="$(sed -n 's/^# pass //p' <<<"$output") things done in Chromium, and the scripts are of their types"
  return "$result"
}

bench_page() {
  bench_needs | install_missing
  prepare_page
  local library="$page_modules/100000.xml"
  [ -e "$library" ] || "$root/build/release/bin/generate_library" --tracks 100000 -o "$library"
  node "$root/bench/page/page.mjs" "$library"
}
