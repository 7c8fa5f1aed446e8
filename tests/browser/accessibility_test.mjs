// Every page can be used by those who do not see it, or not well: axe-core finds nothing.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import { createRequire } from "node:module";
import { after, test } from "node:test";

import { languages, Launch, SendBadSettings, themes, View } from "./support/browser.mjs";
import { ExpectNone } from "./support/faults.mjs";
import { Site } from "./support/site.mjs";

const site = await Site.Started();
const paths = await site.AllPaths();
const axe = await readFile(createRequire(import.meta.url).resolve("axe-core"), "utf8");
const browser = await Launch();

after(async () => {
  await browser.close();
  await site.Remove();
});

// All rules of WCAG 2.0 to 2.2, levels A and AA, and those of good practice. Some are off unless
// they are asked for.
const options = {
  runOnly: ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22a", "wcag22aa", "best-practice"],
  rules: { "target-size": { enabled: true } },
  resultTypes: ["violations"]
};

// axe-core takes a ground that the browser chooses by itself for white, so it is named.
async function Violations(page) {
  await page.evaluate(axe);
  await page.evaluate(() => {
    document.documentElement.style.backgroundColor = "Canvas";
  });
  const { violations } = await page.evaluate((all) => window.axe.run(document, all), options);
  return violations.flatMap((rule) => rule.nodes.map((node) =>
    `${rule.id} at ${node.target.join(" ")}: ${node.failureSummary.replaceAll(/\s+/g, " ")}`));
}

for (const language of languages) {
  for (const [theme, width] of [[themes[0], 1280], [themes[1], 360]]) {
    test(`axe-core finds nothing: ${language.locale}, ${theme}, ${width} px`, async () => {
      const context = await browser.newContext(View(site, { language, theme, width }));
      const page = await context.newPage();
      const faults = [];
      for (const path of paths) {
        await page.goto(path);
        faults.push(...(await Violations(page)).map((fault) => `${path}: ${fault}`));
      }
      await context.close();
      ExpectNone(faults);
    });
  }
}

for (const theme of themes) {
  test(`axe-core finds nothing where a form is refused: ${theme}`, async () => {
    const context = await browser.newContext(View(site, { theme }));
    const page = await context.newPage();
    await SendBadSettings(page, "show_memory");
    ExpectNone(await Violations(page));
    await context.close();
  });
}

test("axe-core looks at what it is given", async () => {
  const context = await browser.newContext(View(site, {}));
  const page = await context.newPage();
  await page.goto("/about");
  await page.evaluate(() => document.documentElement.removeAttribute("lang"));
  assert.match((await Violations(page)).join("\n"), /^html-has-lang at html: /);
  await context.close();
});
