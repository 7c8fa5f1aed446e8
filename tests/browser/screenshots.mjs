// Pictures of every page in every language, theme and width, and on paper:
//
//     screenshots.mjs FOLDER [PAGE...]
//
// writes FOLDER/PAGE-LANGUAGE-THEME-WIDTH.png and FOLDER/PAGE-LANGUAGE-print.png, and shows all that
// are there in FOLDER/index.html. QUILLO_SERVE names the server.
import { mkdir } from "node:fs/promises";
import { join } from "node:path";

import { languages, Launch, SendBadSettings, themes, View, widths } from "./support/browser.mjs";
import { WriteOverview } from "./support/overview.mjs";
import { Site } from "./support/site.mjs";

const [folder, ...chosen] = process.argv.slice(2);
if (!folder) {
  console.error("usage: screenshots.mjs FOLDER [PAGE...]");
  process.exit(2);
}

const site = await Site.Started();
const browser = await Launch();
let count = 0;

async function Picture(page, name) {
  await page.screenshot({ path: join(folder, `${name}.png`), fullPage: true });
  count += 1;
}

// What there is to see: the pages by their addresses, and the settings with something wrong.
async function Scenes() {
  const scenes = (await site.AllPaths()).map((path) => ({
    name: path.slice(1).replaceAll(/[?=]/g, "_"),
    Open: (page) => page.goto(path)
  }));
  scenes.push({ name: "settings_wrong", Open: (page) => SendBadSettings(page, "show_interfaces") });
  return scenes.filter(({ name }) => chosen.length === 0 || chosen.includes(name));
}

async function Take(scene, language) {
  for (const theme of themes) {
    const context = await browser.newContext(View(site, { language, theme }));
    const page = await context.newPage();
    await scene.Open(page);
    for (const width of widths) {
      await page.setViewportSize({ width, height: 800 });
      await Picture(page, `${scene.name}-${language.code}-${theme}-${width}`);
    }
    if (theme === themes[0]) {
      await page.setViewportSize({ width: 700, height: 990 });
      await page.emulateMedia({ media: "print" });
      await Picture(page, `${scene.name}-${language.code}-print`);
    }
    await context.close();
  }
}

try {
  await mkdir(folder, { recursive: true });
  for (const scene of await Scenes()) {
    for (const language of languages) {
      await Take(scene, language);
    }
  }
  console.log(`${count} pictures: see ${await WriteOverview(folder)}`);
} finally {
  await browser.close();
  await site.Remove();
}
