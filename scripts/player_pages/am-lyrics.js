// The custom element <am-lyrics>: its rows are in a shadow tree.
import "@uimaxbai/am-lyrics/am-lyrics.js";

const view = document.querySelector("am-lyrics");

function ttml(song) {
  const escaped = (text) => text.replace(/[&<]/g, (c) => c === "&" ? "&amp;" : "&lt;");
  const rows = song.lines.map((line, i) => {
    const end = i + 1 < song.lines.length ? song.lines[i + 1].at : song.length;
    return `<p begin="${line.at}s" end="${end}s">${escaped(line.text)}</p>`;
  });
  return `<tt xmlns="http://www.w3.org/ns/ttml" xml:lang="${song.language}"><body><div>` +
      rows.join("") + "</div></body></tt>";
}

window.rows = {
  view,
  fill(song) {
    view.duration = song.length * 1000;
    view.ttml = ttml(song);
  },
  mark() { view.currentTime = audio.currentTime * 1000; },
  top() { return 0; },
};
