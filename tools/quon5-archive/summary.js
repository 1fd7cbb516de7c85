// Fills the page. Texts of files become text nodes and nothing else.
"use strict";

(() => {
  const data = JSON.parse(document.getElementById("data").textContent);
  const byId = (id) => document.getElementById(id);
  const [NAME, STATUS, SECONDS, ERRORS, WARNINGS, CHANGES, CHECK, PAGE, DIRECTORY] = [0, 1, 2, 3, 4, 5, 6, 7, 8];
  const NUMBERS = [SECONDS, ERRORS, WARNINGS];
  const STATES = ["refused", "failed", "changed", "reduced", "same"];  // as one looks at them
  const number = (status) => data.rows.filter((row) => row[STATUS] === status).length;
  const present = STATES.filter((status) => number(status) > 0);
  let order = {column: STATUS, down: false};

  function element(tag, attributes = {}, ...children) {
    const node = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) node.setAttribute(name, value);
    node.append(...children);
    return node;
  }

  function compare(one, other) {
    const column = order.column;
    const [a, b] = [one[column], other[column]];
    if (column === STATUS) return STATES.indexOf(a) - STATES.indexOf(b);
    if (NUMBERS.includes(column)) return (a === "" ? -1 : Number(a)) - (b === "" ? -1 : Number(b));
    return a < b ? -1 : a > b ? 1 : 0;
  }

  function cell(row, column) {
    if (column === STATUS) return element("td", {class: `status ${row[STATUS]}`}, row[STATUS]);
    if (column !== NAME) return element("td", NUMBERS.includes(column) ? {class: "number"} : {}, row[column]);
    const node = element("td", {}, row[PAGE] ? element("a", {href: row[PAGE]}, row[NAME]) : row[NAME]);
    if (row[DIRECTORY]) node.append(" ", element("a", {href: row[DIRECTORY] + "/", class: "hint"}, "files"));
    return node;
  }

  const columns = data.columns.map((_, i) => i).filter((i) => i !== CHECK || data.rows.some((row) => row[CHECK]));

  function show() {
    const words = byId("words").value.toLowerCase();
    const states = present.filter((status) => byId("kinds").querySelector(`[value=${status}]`).checked);
    const rows = data.rows.filter((row) => states.includes(row[STATUS]) &&
      (row[NAME].toLowerCase().includes(words) || row[CHANGES].toLowerCase().includes(words)));
    rows.sort((one, other) => (order.down ? -1 : 1) * compare(one, other) || (one[NAME] < other[NAME] ? -1 : 1));
    const body = element("tbody");
    for (const row of rows) body.append(element("tr", {}, ...columns.map((column) => cell(row, column))));
    document.querySelector("#tests tbody").replaceWith(body);
    byId("shown").textContent = `${rows.length} of ${data.rows.length} tests`;
    document.querySelectorAll("#tests th").forEach((head, i) => {
      head.setAttribute("aria-sort", columns[i] !== order.column ? "none" : order.down ? "descending" : "ascending");
    });
  }

  function sortBy(column) {
    // The largest number is looked for first, the first name too.
    order = {column, down: order.column === column ? !order.down : NUMBERS.includes(column)};
    show();
  }

  function fill() {
    const bad = number("failed") + number("refused"), changed = number("changed");
    const told = present.map((status) => `${number(status)} ${status}`).join(", ");
    byId("verdict").textContent = `${data.rows.length} tests: ${told}.`;
    byId("verdict").className = bad ? "bad" : changed ? "look" : "good";
    for (const [name, value] of [["Stored tests", data.tests], ["Reduced", data.made],
                                 ["Held against the stored results", data.compared ? "yes" : "no"]]) {
      byId("head").append(element("div", {}, element("dt", {}, name), element("dd", {}, value)));
    }
    for (const status of present) {
      const box = element("input", {type: "checkbox", value: status, checked: ""});
      box.addEventListener("change", show);
      byId("kinds").append(element("label", {}, box, ` ${status} (${number(status)})`));
    }
    const head = element("tr");
    for (const column of columns) {
      const button = element("button", {type: "button"}, data.columns[column]);
      button.addEventListener("click", () => sortBy(column));
      head.append(element("th", NUMBERS.includes(column) ? {class: "number"} : {}, button));
    }
    document.querySelector("#tests thead").append(head);
    byId("words").addEventListener("input", show);
    byId("made-by").textContent = `Made by ${data.program}.`;
    show();
    document.body.dataset.state = "drawn";
  }

  fill();
})();
