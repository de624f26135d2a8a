// Searches the sections of all pages while somebody types. search_index.js has them as [address, page, heading, text].
const query = document.getElementById("query");
const results = document.getElementById("results");

// Less is better: a heading that is the query, or begins with it, or has all its words; then a text that has them.
function rank([, page, heading, text], wanted, words) {
  const title = heading.toLowerCase();
  if (title === wanted || title === wanted + "()") return 0;
  if (title.startsWith(wanted)) return 1;
  if (words.every(word => title.includes(word))) return 2;
  const all = (page + " " + heading + " " + text).toLowerCase();
  if (all.includes(wanted)) return 3;
  return words.every(word => all.includes(word)) ? 4 : 9;
}

function element(name, text, ...children) {
  const made = document.createElement(name);
  made.append(text, ...children);
  return made;
}

function entry([address, page, heading, text], words) {
  const places = words.map(word => text.toLowerCase().indexOf(word)).filter(place => place >= 0);
  const start = Math.max(0, Math.min(...(places.length ? places : [0])) - 60);
  const link = element("a", heading);
  link.href = address;
  const where = heading === page ? "" : element("small", page);
  const cut = start + 220 < text.length ? text.slice(start, start + 220).replace(/\s\S*$/, " …") : text.slice(start);
  const piece = start ? cut.replace(/^\S*\s/, "… ") : cut;
  return element("li", link, " ", where, element("p", piece));
}

function search() {
  const wanted = query.value.trim().toLowerCase();
  const words = wanted.split(/\s+/);
  const found = !wanted ? [] : search_index.map(section => [rank(section, wanted, words), section])
    .filter(([order]) => order < 9).sort(([a], [b]) => a - b);
  const list = element("ol", "", ...found.slice(0, 30).map(([, section]) => entry(section, words)));
  const count = `${found.length || "No"} ${found.length === 1 ? "section" : "sections"} found`;
  results.replaceChildren(element("p", count), list);
  document.body.classList.toggle("searching", wanted !== "");
}

query.addEventListener("input", search);
results.addEventListener("click", event => {
  if (event.target.tagName === "A") { query.value = ""; search(); }
});
document.addEventListener("keydown", event => {
  if (event.key === "Escape") { query.value = ""; search(); }
  if (event.key === "Enter" && event.target === query) results.querySelector("a")?.click();
  if (event.key === "/" && event.target === document.body) { query.focus(); event.preventDefault(); }
});
for (const link of document.querySelectorAll("nav li a")) {
  if (link.href === location.href.split("#")[0]) link.setAttribute("aria-current", "page");
}
