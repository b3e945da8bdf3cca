// Pictures of the sample's page for docs/page/: node screenshots.mjs FOLDER, in the environment of scripts/page.sh.
import {join} from "node:path";
import {launch, open, samplePage} from "./pages.mjs";

const SIZES = [
  ["wide", 1280, 1000],
  ["middle", 820, 1000],
  ["narrow", 390, 800],
];
const VIEWS = [
  ["overview", ""],
  ["songs", "#songs?sort=-plays"],
];

const browser = await launch();
const sample = samplePage();
for (const [size, width, height] of SIZES) {
  for (const colorScheme of ["light", "dark"]) {
    for (const [view, hash] of size === "wide" ? VIEWS : VIEWS.slice(0, 1)) {
      const page = await open(browser, sample + hash, {viewport: {width, height}, colorScheme});
      await page.waitForTimeout(200);
      await page.screenshot({
        path: join(process.argv[2], `${view}-${size}-${colorScheme}.jpg`),
        type: "jpeg",
        quality: 60,
      });
      await page.context().close();
    }
  }
}
await browser.close();
