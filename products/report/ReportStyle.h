// What every report page has: its style, and the script that zooms the timeline.
#pragma once

#include <cstddef>

namespace scenedetect {

inline constexpr const char* kReportStyle = R"css(
:root { color-scheme: light dark; --ink: #1c1e21; --dim: #667; --paper: #fff; --card: #f3f4f6; --line: #d5d8de;
  --difference: #1769c2; --level: #b26a00; --cut: #c42b3a; --dark: #6b3fa0; }
@media (prefers-color-scheme: dark) { :root { --ink: #e6e7ea; --dim: #9aa1ad; --paper: #15171b; --card: #20242a;
  --line: #3a4049; --difference: #6cb0ff; --level: #f0b252; --cut: #ff6b78; --dark: #b794f6; } }
* { box-sizing: border-box; }
body { margin: 0 auto; max-width: 96rem; padding: 1rem 1.5rem 3rem; background: var(--paper); color: var(--ink);
  font: 15px/1.45 system-ui, sans-serif; }
h1 { font-size: 1.5rem; margin: .3rem 0; overflow-wrap: anywhere; }
h2 { font-size: 1.1rem; margin: 1.6rem 0 .6rem; }
p.facts { color: var(--dim); margin: 0; }
.plot { position: relative; border: 1px solid var(--line); border-radius: 6px; background: var(--card); overflow: hidden; }
.plot svg { display: block; width: 100%; height: 20rem; touch-action: pan-y; cursor: crosshair; }
.plot path, .plot line { vector-effect: non-scaling-stroke; fill: none; }
.difference { stroke: var(--difference); } .level { stroke: var(--level); }
.band { fill: var(--level) !important; opacity: .3; stroke: none; }
.cut { stroke: var(--cut); } .far { opacity: .6; } .dense .far { display: none; } .dense .difference, .dense .level { stroke-width: .6; } .dark { stroke: var(--dark); stroke-width: 2; }
.threshold { stroke: var(--dim); stroke-dasharray: 5 4; } .frame { stroke: var(--line); }
.ticks { position: relative; height: 1.5rem; color: var(--dim); font-size: .8rem; }
.ticks span { position: absolute; transform: translateX(-50%); white-space: nowrap; }
.ticks span:first-child { transform: none; } .ticks span:last-child { transform: translateX(-100%); }
.legend { display: flex; flex-wrap: wrap; gap: .2rem 1.4rem; color: var(--dim); font-size: .85rem; margin: .4rem 0; }
.legend i { display: inline-block; width: 1.4rem; border-top: 2px solid; margin-right: .4rem; vertical-align: middle; }
.sheet { display: grid; grid-template-columns: repeat(auto-fill, minmax(12.5rem, 1fr)); gap: .8rem; }
figure { margin: 0; background: var(--card); border: 1px solid var(--line); border-radius: 6px; padding: .5rem;
  content-visibility: auto; contain-intrinsic-size: auto 12.5rem 12rem; }
figure img { display: block; width: 100%; height: auto; border-radius: 3px; background: #000; }
figcaption { font-size: .85rem; margin-top: .4rem; font-variant-numeric: tabular-nums; }
figcaption div + div { border-top: 1px solid var(--line); margin-top: .3rem; padding-top: .3rem; }
figcaption b { margin-right: .4rem; } figcaption span { color: var(--dim); display: block; }
table { border-collapse: collapse; font-size: .9rem; } td, th { padding: .2rem 1.2rem .2rem 0; text-align: left;
  border-bottom: 1px solid var(--line); overflow-wrap: anywhere; vertical-align: top; }
th { font-weight: 500; color: var(--dim); white-space: nowrap; }
@media (max-width: 45rem) { .ticks span:nth-child(even) { display: none; } body { padding: .5rem .8rem 2rem; }
  .sheet { grid-template-columns: repeat(auto-fill, minmax(9rem, 1fr)); } }
@media print { :root { color-scheme: light; --ink: #000; --dim: #444; --paper: #fff; --card: #fff; --line: #bbb;
  --difference: #1769c2; --level: #b26a00; --cut: #c42b3a; --dark: #6b3fa0; }
  body { padding: 0; max-width: none; font-size: 11px; } .plot svg { height: 7cm; } .screen { display: none; }
  .ticks span:nth-child(even) { display: none; }
  .sheet { grid-template-columns: repeat(4, 1fr); } figure { break-inside: avoid; content-visibility: visible; } }
)css";

/// More scene lines than this would hide what lies beneath; then only their marks between the panels are
/// shown.
inline constexpr std::size_t kMostSceneLines = 150;

/// Wheel and drag zoom and move; a double click shows everything again. Frames are the plot's x.
inline constexpr const char* kReportScript = R"js(
(() => {
  const plot = document.querySelector('.plot svg');
  if (!plot) return;
  const ticks = document.querySelector('.ticks'), here = document.querySelector('#here');
  const frames = Number(plot.dataset.frames), rate = Number(plot.dataset.rate), first = Number(plot.dataset.first);
  const height = plot.viewBox.baseVal.height, mostLines = Number(plot.dataset.lines);
  const cuts = plot.querySelector('.far').getAttribute('d').split('M').slice(1).map(parseFloat);
  let from = 0, span = frames;
  const clock = (frame, digits) => {
    const unit = 10 ** digits, total = Math.round(frame / rate * unit);
    const seconds = Math.floor(total / unit);
    const two = n => String(n).padStart(2, '0');
    const text = Math.floor(seconds / 3600) + ':' + two(Math.floor(seconds / 60) % 60) + ':' + two(seconds % 60);
    return digits ? text + '.' + String(total % unit).padStart(digits, '0') : text;
  };
  const show = () => {
    span = Math.min(frames, Math.max(Math.min(20, frames), span));
    from = Math.min(frames - span, Math.max(0, from));
    plot.setAttribute('viewBox', `${from} 0 ${span} ${height}`);
    const inSight = cuts.filter(cut => cut >= from && cut <= from + span).length;
    plot.classList.toggle('dense', inSight > mostLines);
    const digits = span / rate < 60 ? 2 : 0;
    [...ticks.children].forEach((tick, i, all) => {
      tick.textContent = clock(first + from + span * i / (all.length - 1), digits);
    });
  };
  const frameAt = event => {
    const box = plot.getBoundingClientRect();
    return from + (event.clientX - box.left) / box.width * span;
  };
  plot.addEventListener('wheel', event => {
    event.preventDefault();
    const at = frameAt(event), factor = Math.exp(event.deltaY * 0.002);
    const wanted = Math.min(frames, Math.max(Math.min(20, frames), span * factor));
    from = at - (at - from) * wanted / span;
    span = wanted;
    show();
  }, { passive: false });
  let held = null;
  plot.addEventListener('pointerdown', event => { held = frameAt(event); plot.setPointerCapture(event.pointerId); });
  plot.addEventListener('pointerup', () => { held = null; });
  plot.addEventListener('pointermove', event => {
    if (held !== null) { from += held - frameAt(event); show(); }
    const frame = Math.floor(first + frameAt(event));
    here.textContent = ('variable' in plot.dataset ? '' : `frame ${frame}, `) + clock(frame, 2);
  });
  plot.addEventListener('pointerleave', () => { here.textContent = ''; });
  plot.addEventListener('dblclick', () => { from = 0; span = frames; show(); });
  show();
})();
)js";

} // namespace scenedetect
