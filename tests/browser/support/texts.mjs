// Texts that others wrote to harm a page: lists of injected scripts, and of strings that programs
// stumble over. They are no part of the project; QUILLO_TEST_DATA names the folder of them.
import { existsSync } from "node:fs";
import { readdir, readFile } from "node:fs/promises";
import { join, resolve } from "node:path";

const folder = resolve(process.env.QUILLO_TEST_DATA || "../shared/data");

// Why a test cannot use them; false when it can.
export function WhyNot() {
  const absent = ["xss", "naughty-strings/blns.json"].filter((name) => !existsSync(join(folder, name)));
  return absent.length > 0 &&
    `${absent.join(" and ")} is not in ${folder}: QUILLO_TEST_DATA names the folder`;
}

async function Lines(file) {
  return (await readFile(file, "utf8")).split(/\r?\n/);
}

// Each text once.
export async function Texts() {
  const files = (await readdir(join(folder, "xss"))).filter((name) => name.endsWith(".txt")).sort();
  const texts = JSON.parse(await readFile(join(folder, "naughty-strings/blns.json"), "utf8"));
  for (const file of files) {
    texts.push(...(await Lines(join(folder, "xss", file))));
  }
  return [...new Set(texts)].filter((text) => text !== "");
}
