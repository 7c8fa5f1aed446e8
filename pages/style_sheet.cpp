#include "style_sheet.hpp"

namespace Pages {

char const styleSheet[] = R"(
:root { color-scheme: light dark; --ink: #1c2530; --paper: #f6f7f9; --card: #fff; --line: #d6dbe1;
        --accent: #0b5cad; --quiet: #5b6673; }
@media (prefers-color-scheme: dark) {
  :root { --ink: #e4e8ed; --paper: #14181d; --card: #1d232a; --line: #37414c; --accent: #7db8f0;
          --quiet: #9aa6b2; }
}
* { box-sizing: border-box; }
body { margin: 0; font: 15px/1.45 system-ui, sans-serif; color: var(--ink); background: var(--paper); }
main { max-width: 72rem; margin: 0 auto; padding: 0 1rem 2rem; }
#nav_bar { overflow-x: auto; white-space: nowrap; background: var(--card);
           border-block-end: 1px solid var(--line); padding: .6rem 1rem; }
#nav_bar span, #nav_bar a { display: inline-block; }
#nav_bar a { color: var(--accent); }
#nav_bar .selected { font-weight: 600; }
#nav_bar .unselectable { color: var(--quiet); }
#tabs { white-space: nowrap; overflow-x: auto; padding-block: 1px; }
#tabs span { display: inline-block; padding: .3rem .9rem; border: 1px solid var(--line);
             border-block-end: 0; border-radius: 6px 6px 0 0; }
#tabs .selected { background: var(--card); font-weight: 600; }
#tabs .selectable a { color: var(--accent); }
#tabs img { inline-size: 4px; block-size: 24px; }
#tab_set .content { background: var(--card); border: 1px solid var(--line); }
h2 { font-size: 1.5rem; margin: 1.2rem 0 .4rem; }
h3 { font-size: 1rem; margin: 1.6rem 0 .5rem; color: var(--quiet); }
#tab_set h3 { margin-block-start: .4rem; }
.scroll { overflow-x: auto; background: var(--card); border: 1px solid var(--line);
          border-radius: 6px; }
#tab_set .scroll { border: 0; }
table { border-collapse: collapse; width: 100%; }
th, td { text-align: start; padding: .35rem .75rem; border-block-end: 1px solid var(--line);
         vertical-align: top; }
td { unicode-bidi: plaintext; }
[dir=rtl] td { text-align: right; }
tr:last-child > * { border-block-end: 0; }
th { font-weight: 600; white-space: nowrap; }
th[scope=row] { width: 14rem; }
.quantity { font-variant-numeric: tabular-nums; white-space: nowrap; }
.debug { margin: 2rem 1rem; font: 12px/1.5 ui-monospace, monospace; color: var(--quiet); }
)";

}  // namespace Pages
