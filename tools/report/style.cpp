#include "tools/report/style.h"

namespace {

constexpr char lightColours[] =
    R"(  --paper: #ffffff; --ink: #1b1f24; --muted: #57606a; --rule: #d0d7de;
  --shade: #f3f5f7; --cis: #c2500a; --cis-soft: #f9dfcb; --trans: #0b66a6;
  --trans-soft: #d3e6f5; --bar: #6e7781; --warn: #8a5a00; --warn-soft: #fff4d6;
)";

constexpr char darkColours[] =
    R"(  --paper: #14171b; --ink: #e6e9ed; --muted: #a2acb8; --rule: #3a424c;
  --shade: #1d2228; --cis: #ff9d52; --cis-soft: #4a2f1c; --trans: #6cb6ff;
  --trans-soft: #1c3550; --bar: #8b95a1; --warn: #e8b94a; --warn-soft: #33290f;
)";

constexpr char shapes[] = R"(.picture { color: var(--ink); }
.picture text { fill: var(--ink); font: 12px system-ui, "Segoe UI", "Helvetica Neue", Arial, sans-serif;
  font-variant-numeric: tabular-nums; }
.picture .paper { fill: var(--paper); }
.picture .cis { fill: var(--cis); }
.picture .trans { fill: var(--trans); }
.picture .shade { fill: var(--shade); }
.picture .cis-soft { fill: var(--cis-soft); }
.picture .trans-soft { fill: var(--trans-soft); }
.picture .overlay { fill-opacity: 0.7; }
.picture .ink { fill: var(--ink); }
.picture .bar { fill: var(--bar); }
.picture .warn { fill: var(--warn); }
.picture .rule { stroke: var(--rule); stroke-width: 1; }
.picture .zero { stroke: var(--muted); stroke-width: 1; }
.picture .dash { stroke: var(--muted); stroke-width: 1; stroke-dasharray: 3 3; }
.picture .cis-line { stroke: var(--cis); stroke-width: 2; fill: none; }
.picture .trans-line { stroke: var(--trans); stroke-width: 2; fill: none; stroke-dasharray: 6 3; }
.picture .hollow.paper { fill: var(--paper); }
.picture .mark { stroke: var(--ink); stroke-width: 2; }
.picture .hollow { fill: none; stroke: var(--muted); stroke-width: 1; }
.picture text.muted { fill: var(--muted); }
.picture text.cis { fill: var(--cis); font-weight: 600; }
.picture text.trans { fill: var(--trans); font-weight: 600; }
.picture text.warn { fill: var(--warn); font-weight: 600; }
.picture text.strong { font-weight: 600; }
.picture text.small { font-size: 11px; }
.picture text.letter { font: 11px ui-monospace, "DejaVu Sans Mono", Menlo, Consolas, monospace; }
.picture text.letter.cis, .picture text.letter.trans { font-weight: 700; }
)";

constexpr char layout[] = R"(* { box-sizing: border-box; }
html { background: var(--paper); color: var(--ink); -webkit-text-size-adjust: 100%; }
body { margin: 0 auto; max-width: 740px; padding: 20px 14px 40px; line-height: 1.5;
  font: 16px/1.5 system-ui, "Segoe UI", "Helvetica Neue", Arial, sans-serif; overflow-wrap: anywhere; }
h1 { font-size: 1.5rem; line-height: 1.25; margin: 0 0 4px; }
h2 { font-size: 1.15rem; margin: 36px 0 8px; padding-top: 10px; border-top: 1px solid var(--rule); }
h3 { font-size: 1.1rem; margin: 0; }
p { margin: 6px 0; }
.muted { color: var(--muted); }
.small { font-size: 0.875rem; }
.count { font-size: 1.05rem; margin-top: 10px; }
.call { font-weight: 650; white-space: nowrap; }
.call::before { display: inline-block; width: 1.15em; }
.call.cis { color: var(--cis); }
.call.cis::before { content: "\25B6"; }
.call.trans { color: var(--trans); }
.call.trans::before { content: "\25C0"; }
.call.none { color: var(--muted); }
.call.none::before { content: "\2013"; }
.open::before { opacity: 0.55; }
table { border-collapse: collapse; width: 100%; font-variant-numeric: tabular-nums; font-size: 0.9375rem; }
caption { text-align: left; color: var(--muted); font-size: 0.875rem; padding: 0 0 4px; }
th, td { text-align: left; padding: 5px 10px 5px 0; border-bottom: 1px solid var(--rule); vertical-align: middle; }
th { font-size: 0.8125rem; color: var(--muted); font-weight: 600; }
td.number, th.number { text-align: right; }
td:last-child, th:last-child { padding-right: 0; }
a { color: inherit; text-decoration-color: var(--rule); text-underline-offset: 3px; }
a:focus-visible, .scroll:focus-visible { outline: 2px solid var(--trans); outline-offset: 2px; }
figure { margin: 12px 0; }
figcaption { color: var(--muted); font-size: 0.875rem; margin-top: 4px; }
svg.picture { display: block; max-width: 100%; height: auto; }
.cards td:first-child { min-width: 4.6em; }
.scroll { overflow-x: auto; }
.scroll svg.picture { max-width: none; }
.side { display: flex; flex-wrap: wrap; gap: 12px 36px; align-items: flex-start; }
.side > * { flex: 0 1 auto; min-width: 0; }
.proline { border-top: 1px solid var(--rule); padding: 18px 0 10px; }
.proline:first-of-type { border-top: 0; padding-top: 4px; }
.proline header { display: flex; flex-wrap: wrap; gap: 2px 14px; align-items: baseline; }
.facts { display: flex; flex-wrap: wrap; gap: 4px 24px; margin: 8px 0; padding: 0; }
.facts div { margin: 0; }
.facts dt { color: var(--muted); font-size: 0.8125rem; }
.facts dd { margin: 0; font-variant-numeric: tabular-nums; font-weight: 600; }
.warning { background: var(--warn-soft); border-left: 4px solid var(--warn); padding: 6px 12px; margin: 10px 0; }
.warning strong { color: var(--warn); }
ul { margin: 6px 0; padding-left: 20px; }
@media (max-width: 560px) {
  .cards thead { position: absolute; clip-path: inset(50%); width: 1px; height: 1px; overflow: hidden; }
  .cards tr { display: grid; grid-template-columns: 1fr auto; padding: 8px 0; border-bottom: 1px solid var(--rule); }
  .cards td { border: 0; padding: 1px 0; }
  .cards td[data-label]::before { content: attr(data-label) " "; color: var(--muted); font-size: 0.8125rem; }
  .cards td.wide { grid-column: 1 / -1; }
  .cards td:nth-child(2) { text-align: right; }
  .cards td.number { text-align: left; padding-right: 12px; }
}
@page { margin: 14mm 12mm; }
@media print {
  body { max-width: none; padding: 0; font-size: 10.5pt; }
  .proline, figure, tr, .warning, .keep { break-inside: avoid; }
  h2, h3 { break-after: avoid; }
  .scroll { overflow: visible; }
  .scroll svg.picture { max-width: 100%; }
  a { text-decoration: none; }
  .warning { -webkit-print-color-adjust: exact; print-color-adjust: exact; }
}
)";

std::string colours() {
  return std::string(":root {\n") + lightColours +
         "}\n@media screen and (prefers-color-scheme: dark) {\n:root {\n" + darkColours + "}\n}\n";
}

} // namespace

std::string pictureStyle() {
  return colours() + shapes;
}

std::string pageStyle() {
  return ":root { color-scheme: light dark; }\n" + colours() + shapes + layout;
}
