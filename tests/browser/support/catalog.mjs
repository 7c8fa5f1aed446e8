// Catalogs in which every phrase of the sample pages is translated to something else.
import { execFile } from "node:child_process";
import { mkdir, readFile, writeFile } from "node:fs/promises";
import { join } from "node:path";
import { promisify } from "node:util";

const source = new URL("../../../pages/catalogs/en-us.po", import.meta.url);
const header = 'msgid ""\nmsgstr "Content-Type: text/plain; charset=UTF-8\\n"\n';

// The byte that stands between a phrase and its context can be part of neither.
function Quoted(text) {
  const escapes = { "\\": "\\\\", '"': '\\"', "\n": "\\n", "\r": "\\r", "\t": "\\t" };
  return `"${text.replaceAll(/[\\"\n\r\t]/g, (one) => escapes[one]).replaceAll("\x04", "?")}"`;
}

// The phrases, as the catalog's source quotes them.
export async function Phrases() {
  const text = await readFile(source, "utf8");
  return [...text.matchAll(/^msgid ("[^]*?")\nmsgstr/gm)].map((found) => found[1])
    .filter((phrase) => phrase !== '""');
}

// Writes a catalog for English to `folder`: the phrases, and the text of each.
export async function WriteCatalog(folder, phrases, texts) {
  const place = join(folder, "en-us", "LC_MESSAGES");
  await mkdir(place, { recursive: true });
  const entries = phrases.map((phrase, i) => `msgid ${phrase}\nmsgstr ${Quoted(texts[i])}\n`);
  await writeFile(join(folder, "en-us.po"), [header, ...entries].join("\n"));
  await promisify(execFile)("msgfmt",
    ["--output-file", join(place, "quillo.mo"), join(folder, "en-us.po")]);
}
