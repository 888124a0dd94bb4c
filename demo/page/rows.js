// What the pages have in common: a view whose rows all stand in the document, one below the other.

// The page's head: what plays, and the buttons.
document.body.insertAdjacentHTML("afterbegin", `
  <header>
    <h1 id="title"></h1>
    <p id="artist"></p>
    <button id="previous">Previous</button>
    <button id="toggle">Play or pause</button>
    <button id="next">Next</button>
  </header>`);

function element(tag, className, text = "") {
  const made = document.createElement(tag);
  made.className = className;
  made.textContent = text;
  return made;
}

// A row for a line, as the guidelines for accessible pages have it: a button that leads there.
function buttonRow(line) {
  const row = element("button", "row", line.text);
  row.addEventListener("click", () => { audio.currentTime = line.at; });
  return row;
}

function plainRows(view, makeRow) {
  return {
    view,
    fill(song) {
      view.replaceChildren(element("div", "before"), ...song.lines.map(makeRow),
                           element("div", "after"));
    },
    mark(index) {
      const rows = [...view.querySelectorAll(".row")];
      rows.forEach((row, i) => row.classList.toggle("now", i === index));
    },
    top(index) { return view.querySelectorAll(".row")[index].offsetTop; },
  };
}
