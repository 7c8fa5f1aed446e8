// What the machine tells is shown as text as well: the catalogs of phrases, the names of processes.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { once } from "node:events";
import { appendFile, symlink } from "node:fs/promises";
import { createServer } from "node:http";
import { join } from "node:path";
import { after, test } from "node:test";

import { Phrases, WriteCatalog } from "./support/catalog.mjs";
import { ExpectNone } from "./support/faults.mjs";
import { Inspector } from "./support/parts.mjs";
import { Site } from "./support/site.mjs";
import { Texts, WhyNot } from "./support/texts.mjs";

const skip = WhyNot();
const site = await Site.Started();
const paths = await site.Paths();
const inspector = await Inspector.Of(site);

after(async () => {
  await inspector.Close();
  await site.Remove();
});

// As a page's title shows it.
function Collapsed(text) {
  return text.replaceAll(/[\t\n\f\r ]+/g, " ").replaceAll(/^ | $/g, "");
}

test("phrases of a catalog", { skip }, async () => {
  const phrases = await Phrases();
  const texts = await Texts();
  const title = phrases.indexOf('"Status"');
  const folder = join(site.folder, "catalogs");
  const faults = [];
  for (let i = 0; i < texts.length; i += phrases.length) {
    const some = phrases.map((_, index) => texts[(i + index) % texts.length]);
    await WriteCatalog(folder, phrases, some);
    await site.Stop();
    await site.Start({ environment: { QUILLO_CATALOG_DIR: folder } });
    const page = await inspector.Page(site.address);
    for (const path of paths) {
      await page.goto(path);
      faults.push(...(await inspector.Faults(page)).map((fault) => `${path}, texts from ${i}: ${fault}`));
    }
    await page.goto("/status");
    assert.equal(await page.title(), Collapsed(some[title]));
    await page.context().close();
  }
  ExpectNone(faults);
});

test("entries of the log", { skip }, async () => {
  const lines = (await Texts()).map((text) =>
    `2026-05-01T12:30:05.123+02:00 [1] warning a.cpp:1: ${text.replaceAll(/[\n\r]/g, " ")}\n`);
  await appendFile(site.logFile, lines.join(""));
  const page = await inspector.Page(site.address);
  const older = page.locator('a[href*="before="]');
  const faults = [];
  let count = 0;
  await page.goto("/log?level=warning&text=a.cpp");
  for (;;) {
    count += await page.locator(".records td:last-child").count();
    faults.push(...(await inspector.Faults(page)));
    if (await older.count() === 0) {
      break;
    }
    await page.goto(await older.getAttribute("href"));
  }
  await page.context().close();
  assert.equal(count, lines.length);
  ExpectNone(faults);
});

test("names of processes", async (t) => {
  const names = ["<svg onload=a()", "\"onfocus='a()'>", "<b>bold&amp;'"];
  const page = await inspector.Page(site.address);
  for (const name of names) {
    const program = join(site.folder, name);
    await symlink("/bin/cat", program);
    const process = spawn(program, { stdio: ["pipe", "ignore", "inherit"] });
    t.after(() => process.kill());
    await once(process, "spawn");
    await page.goto("/processes");
    assert.equal(await page.getByText(name, { exact: true }).count(), 1, name);
    ExpectNone(await inspector.Faults(page));
  }
  await page.context().close();
});

// A server that does not care.
async function Careless(text) {
  const server = createServer((_, answer) => {
    answer.setHeader("Content-Type", "text/html; charset=utf-8");
    answer.end(`<!DOCTYPE html><title>Careless</title><p>${text}</p>`);
  });
  server.listen(0, "127.0.0.1");
  await once(server, "listening");
  return server;
}

for (const [text, found] of [
  ["<script>alert(1)</script>", /calls alert\(1\)/],
  ["<img src=/none onerror=alert(1)>", /calls alert\(1\)/],
  ["<a href=javascript:alert(1)>x</a>", /A leads to javascript:/],
  ["<b>x</b>", /^B$/m],
  ["<p onclick='x()'>", /^P onclick$/m],
  ["<img src=http://127.0.0.1:1/>", /asks for http:\/\/127.0.0.1:1\//]]) {
  test(`what is not shown as text is found: ${text}`, async (t) => {
    const server = await Careless(text);
    t.after(() => server.close());
    const page = await inspector.Page(`http://127.0.0.1:${server.address().port}`);
    await page.goto("/");
    assert.match((await inspector.Faults(page)).join("\n"), found);
    await page.context().close();
  });
}
