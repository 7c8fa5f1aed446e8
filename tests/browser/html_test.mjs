// What arrives is good HTML: html-validate finds nothing.
import assert from "node:assert/strict";
import { after, test } from "node:test";

import { HtmlValidate } from "html-validate";

import { languages } from "./support/browser.mjs";
import { ExpectNone } from "./support/faults.mjs";
import { Site } from "./support/site.mjs";

const site = await Site.Started();
const paths = await site.AllPaths();

after(() => site.Remove());

// All rules there are, but for what the library itself writes: widgets and tables arrive at devices
// and in pages of old byte by byte as they always did.
const validator = new HtmlValidate({
  root: true,
  extends: ["html-validate:standard", "html-validate:recommended", "html-validate:a11y",
    "html-validate:document"],
  rules: {
    // An attribute without a value is written as checked="".
    "attribute-boolean-style": "off",
    // The items of a navigation bar have their width in their own style, and a tab set its place.
    "no-inline-style": ["error", {
      allowedProperties: ["font-weight", "padding", "padding-bottom", "padding-left",
        "padding-right", "top"]
    }],
    // A navigation bar is a div, to which the kit gives the role.
    "prefer-native-element": ["error", { exclude: ["navigation"] }],
    // A table takes its rows itself.
    "prefer-tbody": "off",
    // The style sheet comes from the server of the page itself.
    "require-sri": ["error", { target: "crossorigin" }],
    // The script that sets the focus says what it is written in.
    "script-type": "off"
  }
});

async function Faults(html) {
  const report = await validator.validateString(html);
  return report.results.flatMap((result) => result.messages).map((fault) =>
    `${fault.line}:${fault.column} ${fault.ruleId}: ${fault.message} (${fault.selector})`);
}

for (const { locale } of languages) {
  test(`html-validate finds nothing: ${locale}`, async () => {
    const faults = [];
    for (const path of paths) {
      const answer = await fetch(site.address + path, { headers: { "Accept-Language": locale } });
      faults.push(...(await Faults(await answer.text())).map((fault) => `${path}:${fault}`));
    }
    ExpectNone(faults);
  });
}

test("html-validate finds nothing where a form is refused", async () => {
  const shown = await fetch(`${site.address}/settings`);
  const [, name, token] = (await shown.text()).match(/name="(\w+)" type="hidden" value="(\w+)"/);
  const answer = await fetch(`${site.address}/settings`, {
    method: "POST",
    body: new URLSearchParams({ [name]: token, show_memory: "neither" }),
    headers: {
      Cookie: shown.headers.get("set-cookie").split(";")[0],
      Origin: site.address
    }
  });
  const html = await answer.text();
  assert.match(html, /\.focus\(\);/);
  ExpectNone(await Faults(html));
});

test("html-validate reads what it is given", async () => {
  const answer = await fetch(`${site.address}/about`);
  const html = (await answer.text()).replace("</h1>", "</h3>");
  assert.match((await Faults(html)).join("\n"), /close-order/);
});
