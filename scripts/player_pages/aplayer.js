// APlayer with the lyrics that it shows below the title.
import APlayer from "aplayer";
import "aplayer/dist/APlayer.min.css";

let player = null;

function lrc(song) {
  const two = (number) => number.toFixed(2).padStart(5, "0");
  return song.lines.map(({at, text}) => `[0${Math.floor(at / 60)}:${two(at % 60)}]${text}`).join("\n");
}

window.rows = {
  view: document.getElementById("here"),
  fill(song) {
    if (player) player.destroy();
    player = new APlayer({
      container: this.view,
      lrcType: 1,
      audio: [{name: song.title, artist: song.artist, url: audio.src, lrc: lrc(song)}],
    });
  },
  mark() { player.lrc.update(audio.currentTime); },
  top() { return 0; },
};
