// Plays silence as long as a song while the page's `rows` show its lines, and tells the browser's media
// session what plays. `rows` has the functions fill(song), mark(index), and top(index): where the line
// begins in `view`, which is scrolled. The address may ask for ?song=NUMBER (from 1) and at=SECONDS.
const asked = new URLSearchParams(location.search);
const audio = document.createElement("audio");

// 8-bit samples, 8000 a second, of a tone too quiet to hear: pure silence some browsers do not tell of.
function quietSound(seconds) {
  const samples = Uint8Array.from({length: seconds * 8000}, (_, i) => 128 + (i >> 3) % 2);
  const head = new DataView(new ArrayBuffer(44));
  const text = (at, name) => [...name].forEach((c, i) => head.setUint8(at + i, c.charCodeAt(0)));
  text(0, "RIFF");
  text(8, "WAVEfmt ");
  text(36, "data");
  const numbers = [[4, 36 + samples.length], [16, 16], [20, 0x10001], [24, 8000], [28, 8000], [32, 0x80001]];
  for (const [at, value] of [...numbers, [40, samples.length]]) head.setUint32(at, value, true);
  return URL.createObjectURL(new Blob([head, samples], {type: "audio/wav"}));
}

window.addEventListener("load", () => {
  const song = songs[(asked.get("song") || 1) - 1];
  document.title = song.title;
  document.getElementById("title").textContent = song.title;
  document.getElementById("artist").textContent = song.artist;
  audio.src = quietSound(song.length);
  rows.fill(song);
  navigator.mediaSession.metadata = new MediaMetadata({title: song.title, artist: song.artist, album: song.album});
  const toggle = () => audio.paused ? audio.play() : audio.pause();
  document.getElementById("toggle").addEventListener("click", toggle);
  navigator.mediaSession.setActionHandler("play", () => audio.play());
  navigator.mediaSession.setActionHandler("pause", () => audio.pause());
  let current = -1;
  audio.addEventListener("timeupdate", () => {
    const next = song.lines.findIndex((line) => line.at > audio.currentTime);
    const index = Math.max(0, (next < 0 ? song.lines.length : next) - 1);
    if (index === current) return;
    current = index;
    rows.mark(index);
    rows.view.scrollTop = rows.top(index) - rows.view.clientHeight * 0.3;
  });
  audio.currentTime = Number(asked.get("at") || 0);
  audio.play();
});
