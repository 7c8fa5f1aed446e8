// A page that shows pictures side by side: a chapter for each scene, smaller than life, each a link
// to the picture itself.
import { readdir, writeFile } from "node:fs/promises";
import { join } from "node:path";

// SCENE-LANGUAGE-VIEW.png, where a view is a theme and a width, or "print".
function Parts(file) {
  const [, scene, language, view] = file.match(/^(.+?)-([a-z]{2})-(.+)\.png$/);
  return { file, scene, language, view };
}

function Figure({ file, language, view }) {
  const size = view.endsWith("1280") ? 420 : 160;
  return `<figure><a href="${file}"><img src="${file}" width="${size}" loading="lazy" alt=""></a>` +
    `<figcaption>${language}, ${view.replace("-", ", ")}</figcaption></figure>\n`;
}

// Writes FOLDER/index.html, of all pictures that are in FOLDER, and gives its path.
export async function WriteOverview(folder) {
  const pictures = (await readdir(folder)).filter((name) => name.endsWith(".png")).sort().map(Parts);
  const chapters = [...new Set(pictures.map(({ scene }) => scene))].map((scene) =>
    `<h2>${scene}</h2>\n<section>\n${
      pictures.filter((one) => one.scene === scene).map(Figure).join("")}</section>\n`);
  const path = join(folder, "index.html");
  await writeFile(path, `<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<title>Pictures of the pages</title>
<style>
body { margin: 1rem; font: 14px/1.4 system-ui, sans-serif; background: #ddd; }
section { display: flex; flex-wrap: wrap; align-items: start; gap: 1rem; }
figure { margin: 0; }
a { display: block; max-height: 420px; overflow: hidden; }
</style>
${chapters.join("")}`);
  return path;
}
