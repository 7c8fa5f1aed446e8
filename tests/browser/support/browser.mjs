// Debian's Chromium, and what a page says of itself while it is looked at.
import { chromium } from "playwright-core";

// What the browser asks for, and what the page is then in.
export const languages = [
  { locale: "en-US", code: "en", direction: "ltr" },
  { locale: "de-DE", code: "de", direction: "ltr" },
  { locale: "ar-EG", code: "ar", direction: "rtl" }];
export const themes = ["light", "dark"];
export const widths = [320, 360, 1280];

// Nothing but the pages is asked for, so that nothing fails for want of a network.
export const launchOptions = {
  executablePath: process.env.QUILLO_CHROMIUM || "/usr/bin/chromium",
  timeout: 120000,
  args: ["--disable-gpu", "--disable-quic", "--no-first-run", "--disable-background-networking",
    "--disable-component-update", "--disable-sync"]
};

export function Launch() {
  return chromium.launch(launchOptions);
}

// The options of a context.
export function View(site, { language = languages[0], theme = "light", width = 1280, ...others }) {
  return {
    baseURL: site.address,
    locale: language.locale,
    colorScheme: theme,
    viewport: { width, height: width < 600 ? 740 : 800 },
    ...others
  };
}

// Collects what went wrong on a page: each entry is a line for a person.
export class Watch {
  constructor(page) {
    this.faults = [];
    page.on("console", (message) => {
      if (["error", "warning"].includes(message.type())) {
        this.faults.push(`console: ${message.text()} (${message.location().url})`);
      }
    });
    page.on("pageerror", (error) => this.faults.push(`script: ${error.message}`));
    page.on("requestfailed", (request) =>
      this.faults.push(`not loaded: ${request.url()} (${request.failure().errorText})`));
    page.on("dialog", (dialog) => {
      this.faults.push(`dialog: ${dialog.message()}`);
      return dialog.dismiss();
    });
  }

  // The faults since the last call.
  Take() {
    return this.faults.splice(0);
  }
}

// Sends the settings with a box that has a value no box of the page has: the page that comes says
// what is wrong, and its script puts the focus there.
export async function SendBadSettings(page, name) {
  await page.goto("/settings");
  await page.locator(`input[name=${name}]`).evaluate((box) => {
    box.value = "neither";
    box.checked = true;
  });
  await Promise.all([
    page.waitForResponse((response) => response.status() === 400),
    page.getByRole("button").click()]);
  await page.locator(`input[name=${name}][aria-invalid=true]`).waitFor();
}

// Has the status page show the file systems, or not.
export async function StoreStorage(page, isShown) {
  await page.goto("/settings");
  await page.locator("input[name=show_storage]").setChecked(isShown);
  await page.getByRole("button").click();
  await page.waitForURL("**/settings?stored=yes");
}
