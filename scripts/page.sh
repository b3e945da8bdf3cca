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
page_tools="$root/tests/page/tools"

# Chromium, what drives it, and what looks at the sources.
prepare_page() {
  page_needs | install_missing
  mkdir -p "$page_modules"
  cp "$page_tools"/* "$page_modules"
  cmp -s "$page_tools/package-lock.json" "$page_modules/node_modules/installed" ||
    { npm ci --prefix "$page_modules" --ignore-scripts --no-audit --no-fund &&
      cp "$page_tools/package-lock.json" "$page_modules/node_modules/installed"; } >"$page_modules.log" 2>&1 ||
    die "npm failed; its output is in build/page.log"
  build_page_host >"$page_modules.log" 2>&1 || die "The build failed; its output is in build/page.log"
  export TAVREL="$root/build/release/bin/tavrel" TAVREL_SAMPLE="$root/samples/home"
  export PAGE_MODULES="$page_modules" PAGE_FOLDER="$page_modules/pages" CHROMIUM
  CHROMIUM=$(command -v chromium)
}
build_page_host() {
  (cd "$root" && cmake --preset release -DTAVREL_BUILD_BENCH=ON -DTAVREL_OPTIMIZE_BENCH=ON &&
    cmake --build --preset release --target tavrel_host generate_library)
}

# The types of the scripts, what ESLint finds in them and in the styles, and whether Prettier would write them so.
look_at_sources() {
  local tools="$page_modules/node_modules/.bin" result=0
  cd "$root" || return 1
  "$tools/tsc" -p host/page/browser || result=1
  "$tools/eslint" -c "$page_modules/eslint.config.mjs" host/page/browser tests/page bench/page || result=1
  "$tools/prettier" --config "$page_modules/prettier.json" --log-level warn --check \
    'host/page/browser/*.{js,css}' 'tests/page/**/*.mjs' 'bench/page/*.mjs' || result=1
  return "$result"
}

run_page() {
  local output result=0
  prepare_page
  (look_at_sources) || result=1
  output=$(node --test --test-reporter=tap "$root"/tests/page/browser/*.test.mjs 2>&1) || result=1
  [ "$result" -eq 0 ] || echo "$output"
  mkdir -p "$page_modules/pictures"  # to be looked at; those of docs/page/ are such
  node "$root/tests/page/browser/screenshots.mjs" "$page_modules/pictures" || result=1
  counted="$(sed -n 's/^# pass //p' <<<"$output") things done in Chromium; the sources are typed, linted and formatted"
  return "$result"
}

bench_page() {
  bench_needs | install_missing
  prepare_page
  local library="$page_modules/100000.xml"
  [ -e "$library" ] || "$root/build/release/bin/generate_library" --tracks 100000 -o "$library"
  node "$root/bench/page/page.mjs" "$library"
}
