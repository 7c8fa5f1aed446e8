// Without scripts all of it works as well.
import assert from "node:assert/strict";
import { after, test } from "node:test";

import { languages, Launch, StoreStorage, View, Watch } from "./support/browser.mjs";
import { ExpectNone } from "./support/faults.mjs";
import { Site } from "./support/site.mjs";

const site = await Site.Started();
const browser = await Launch();

after(async () => {
  await browser.close();
  await site.Remove();
});

async function Open(path, others) {
  const context = await browser.newContext(View(site, { javaScriptEnabled: false, ...others }));
  const page = await context.newPage();
  await page.goto(path);
  return page;
}

// What a page shows whatever the values are that the machine has at the moment.
function Words(page) {
  return page.locator("h1, h2, h3, th, label, legend, .choices a").evaluateAll((all) =>
    all.filter((one) => one.checkVisibility()).map((one) => one.textContent.trim()));
}

test("a page shows what it shows with scripts, and complains of nothing", async () => {
  for (const language of languages) {
    const plain = await Open("/status", { language });
    const scripted = await Open("/status", { language, javaScriptEnabled: true });
    const watch = new Watch(plain);
    for (const path of await site.Paths()) {
      await plain.goto(path);
      await scripted.goto(path);
      assert.deepEqual(await Words(plain), await Words(scripted), path);
    }
    ExpectNone(watch.Take());
    await plain.context().close();
    await scripted.context().close();
  }
});

test("settings are stored", async () => {
  const page = await Open("/settings");
  for (const isChecked of [false, true]) {
    await page.locator("input[name=show_storage]").setChecked(isChecked);
    await page.getByRole("button").click();
    await page.waitForURL("**/settings?stored=yes");
    assert.equal(await page.locator("input[name=show_storage]").isChecked(), isChecked);
  }
  await page.context().close();
});

test("a link shows the values anew", async () => {
  const page = await Open("/status");
  const settings = await page.context().newPage();
  const storage = page.locator("#live h3", { hasText: "Storage" });
  for (const isShown of [false, true]) {
    await StoreStorage(settings, isShown);
    assert.equal(await storage.count(), isShown ? 0 : 1);
    await Promise.all([
      page.waitForEvent("load"), page.getByRole("link", { name: "Refresh" }).click()]);
    assert.equal(await storage.count(), isShown ? 1 : 0);
  }
  await page.context().close();
});

test("every page, view and language is a link away", async () => {
  const page = await Open("/status");
  for (const path of (await site.Paths()).slice(1)) {
    await page.locator(`#nav_bar a[href="${path}"]`).click();
    await page.waitForURL(`**${path}`);
  }
  await page.goto("/network");
  await page.getByRole("link", { name: "Hardware" }).click();
  await page.getByRole("columnheader", { name: "MTU" }).waitFor();
  await page.goto("/language");
  await page.getByRole("link", { name: "العربية" }).click();
  await page.locator("html[dir=rtl]").waitFor();
  await page.context().close();
});

test("what can be opened opens", async () => {
  const page = await Open("/widgets");
  const text = page.getByText("Seen once it is opened.", { exact: true }).first();
  assert.equal(await text.isVisible(), false);
  await page.locator("summary", { hasText: "Closed" }).click();
  await text.waitFor({ state: "visible" });
  await page.context().close();
});
