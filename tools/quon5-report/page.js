// Fills the page with the report. Texts of files become text nodes and nothing else.
"use strict";

function element(tag, attributes = {}, ...children) {
  const node = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) node.setAttribute(name, value);
  node.append(...children);
  return node;
}

(async () => {
  const opened = performance.now();
  const report = JSON.parse(document.getElementById("report").textContent);
  const byId = (id) => document.getElementById(id);

  // A table. A column is [title, content of a row, class]; a row may be the title of a group. What
  // has no rows is said in words.
  function table(caption, columns, rows, className = "") {
    if (rows.length === 0) {
      const nothing = report.verdict.complete ? element("p", {class: "soft"}, "None.")
        : element("p", {class: "missing"}, "Nothing: the result is not complete.");
      return element("div", {}, ...(caption ? [element("p", {class: "caption"}, caption)] : []), nothing);
    }
    const body = element("tbody");
    for (const row of rows) {
      if (row.group !== undefined) {
        body.append(element("tr", {class: "group"}, element("th", {colspan: columns.length}, row.group)));
        continue;
      }
      const line = element("tr");
      for (const [, content, kind] of columns) {
        const cell = content(row);
        const td = element("td", kind ? {class: kind} : {});
        if (cell instanceof Node) td.append(cell); else td.textContent = cell ?? "";
        if (cell instanceof Element && cell.dataset.mark) td.classList.add(cell.dataset.mark);
        line.append(td);
      }
      body.append(line);
    }
    const head = element("tr", {}, ...columns.map(([title, , kind]) => element("th", kind ? {class: kind} : {}, title)));
    return element("div", {class: "wide"},
                   element("table", className ? {class: className} : {}, ...(caption ? [element("caption", {}, caption)] : []),
                           element("thead", {}, head), body));
  }

  const counted = (count, what) => `${count} ${what}${count === 1 ? "" : "s"}`;
  const marked = (text, mark) => element("span", {"data-mark": mark}, text);
  const reading = (value) => value === null ? "" : `${value.text} ${value.units}`.trim();
  const named = (keyword) => (row) => row[keyword];

  // A text of the message catalogue: words in backticks are code.
  function catalogueText(text) {
    const node = element("span");
    (text.endsWith(".") ? text : text + ".").split("`").forEach((part, i) => node.append(i % 2 ? element("code", {}, part) : part));
    return node;
  }

  function fillHead() {
    const {head, verdict} = report;
    const title = `Test cell ${head.cell ?? "?"}, map ${head.map || "?"}, cycle ${head.cycle}, run ${head.run_number || "?"}`;
    document.title = title;
    byId("title").textContent = title;
    byId("verdict").textContent = verdict.text;
    byId("verdict").className = !verdict.complete || verdict.errors > 0 ? "bad"
      : verdict.warnings > 0 || verdict.notes.length > 0 ? "look" : "good";
    byId("notes").append(...verdict.notes.map((note) => element("li", {}, note)));
    const facts = [["Start of test", head.start_of_test.replace("T", " ")], ["Cell", head.cell], ["Map", head.map],
                   ["Cycle", head.cycle], ["Activity", head.activity], ["Run number", head.run_number],
                   ["Filter", head.filter], ["Reduced", head.reduced.replace("T", " ")], ["Software", head.software]];
    for (const [name, value] of facts) {
      const text = value === null || value === "" ? element("span", {class: "missing"}, "not known") : String(value);
      byId("head").append(element("div", {}, element("dt", {}, name), element("dd", {}, text)));
    }
    byId("made-by").textContent = `Made by quon5-report of ${head.software}.`;
  }

  function fillLog() {
    const section = byId("log");
    const {log} = report;
    const groups = new Map();
    for (const entry of log.entries) {
      const key = entry.message ?? JSON.stringify([entry.module, entry.mode, entry.code, entry.text]);
      if (!groups.has(key)) groups.set(key, []);
      groups.get(key).push(entry);
    }
    const order = ["error", "warning", "information"];
    const sorted = [...groups.values()].sort((a, b) => order.indexOf(a[0].severity) - order.indexOf(b[0].severity));
    for (const entries of sorted) section.append(logGroup(entries, log.messages[entries[0].message]));
    if (log.entries.length === 0) section.append(element("p", {}, "No entries of this run."));
    const process = log.entries.find((entry) => entry.process !== null)?.process;
    section.append(element("p", {class: "hint"}, `${log.file}${process ? `, process ${process}` : ""}: ${log.chosen}.`));
    for (const problem of log.problems) section.append(fault(log.file, problem));
  }

  function logGroup(entries, message) {
    const [first, ...others] = entries;
    const node = element("div", {class: `entry ${first.severity}`});
    const count = others.length > 0 ? ` ${entries.length} times, first` : "";
    node.append(element("p", {}, element("span", {class: "badge"}, first.severity),
                        element("span", {class: "soft"}, `${message?.section ?? first.module}${count} ${first.time.replace("T", " ")}, module ${first.module}, code ${first.code}`)),
                element("p", {class: "said"}, first.text));
    if (others.length > 0) {
      node.append(element("details", {}, element("summary", {}, `${others.length} more`),
                          ...others.map((entry) => element("p", {class: "said"}, entry.text))));
    }
    if (message !== undefined) {
      const before = report.log.entries[report.log.entries.indexOf(first) - 1];
      if (before && /entry before/.test(message.means + message.to_do)) {
        node.append(element("p", {}, element("b", {}, "The entry before: "), element("span", {class: "said"}, before.text)));
      }
      node.append(element("p", {}, element("b", {}, "Means: "), catalogueText(message.means)),
                  element("p", {}, element("b", {}, "To do: "), catalogueText(message.to_do)));
    }
    return node;
  }

  const fault = (file, problem) =>
    element("p", {class: "fault"}, `${file}${problem.line > 0 ? `:${problem.line}` : ""}: ${problem.text}`);

  function fillChanges() {
    if (report.changes === null) return byId("changes").remove();
    const {against, differences} = report.changes;
    byId("changes").append(element("p", {}, differences.length === 0
      ? `Nothing differs from the results in ${against}.` : `${counted(differences.length, "difference")} from the results in ${against}.`));
    if (differences.length === 0) return;
    const names = new Set(report.traces.map((trace) => report.composite.channels[trace.channel].name));
    const place = (row) => {
      const name = row.place.replace(/^channel /, "");
      if (!row.records || !names.has(name)) return row.place;
      const show = element("button", {type: "button", class: "link", title: "show the traces there"}, row.place);
      show.addEventListener("click", () => window.quon5Traces?.show(name, row.at_time));
      return show;
    };
    const columns = [["File", named("file"), "name"], ["What", place], ["Change", named("change")],
                     ["Earlier", named("earlier")], ["Now", (row) => row.records ? row.text : row.later]];
    const shown = 25;
    byId("changes").append(table("", columns, differences.slice(0, shown)));
    if (differences.length <= shown) return;
    byId("changes").append(element("details", {}, element("summary", {}, `${differences.length - shown} more`),
                                   table("", columns, differences.slice(shown))));
  }

  function fillValues() {
    const value = (row) => row.value === null ? marked(row.text, "missing") : row.text;
    byId("value-tables").append(
      table("Value rows", [["Row", named("row"), "number"], ["", named("means")], ["Value", value, "number"], ["Units", named("units")]], report.rows, "rows"),
      element("div", {},
        table("Integer codes", [["Code", named("code"), "number"], ["", named("means")], ["Value", named("value"), "number"], ["", named("explained")]], report.codes, "codes"),
        table("Filter data", [["Entry", named("keyword"), "name"], ["", named("means")], ["Value", value, "number"], ["Units", named("units")]], report.filter_data, "filter-data")));
  }

  const STAGES = {continuous: ["CONT_SAMPL", "FTIR_SAMPL"], bag: ["BATCH_SAMPL"], background: ["BKGRD_SAMPL"]};

  // What one analyser was, its readings in the units of its column; other units are named.
  function analyserTexts(row) {
    const units = (row.span_reference ?? row.upper ?? row.zero_before ?? row.concentration)?.units ?? "";
    const number = (value) => value === null ? "" : value.units === units ? value.text : reading(value);
    const range = row.lower === null && row.upper === null ? "" : `${number(row.lower) || "?"} … ${number(row.upper) || "?"}`;
    const background = row.stage !== "continuous" ? row
      : report.analysers.find((other) => other.stage === "background" && other.channel === row.channel);
    const leaks = report.leak_tests.filter((test) => STAGES[row.stage].includes(test.train) && test.channels.includes(row.channel));
    return {units, number, range,
            background: background === undefined ? "" : `${number(background.concentration)} ${background.sampled}`.trim(),
            leak: leaks.map((test) => `${test.train} ${test.number}`).join(", ")};
  }

  function fillAnalysers() {
    const limit = report.drift_limit_percent;
    const drift = (percent) => percent === null ? ""
      : Math.abs(percent) > limit ? marked(percent.toFixed(2), "beyond") : percent.toFixed(2);
    const titles = {continuous: "Continuous, with the background beside it", bag: "Sample bag", background: "Background"};
    const rows = [];
    for (const stage of Object.keys(STAGES)) {
      const own = report.analysers.filter((row) => row.stage === stage);
      if (own.length > 0) rows.push({group: titles[stage]}, ...own.map((row) => ({...row, texts: analyserTexts(row)})));
    }
    const text = (name) => (row) => row.texts.number(row[name]);
    const deskew = (row) => row.stage !== "continuous" || row.deskew === null ? ""
      : `${row.deskew.value ?? row.deskew.text} ${row.deskew.units}`;
    byId("analysers").append(
      element("p", {class: "hint"}, `Drift is the change from before to after the test in percent of the reference span. Beyond ${limit} % it is marked.`),
      table("", [["Channel", named("channel"), "name"], ["Method", named("method")], ["Range", (row) => row.texts.range, "number"],
                 ["Units", (row) => row.texts.units],
                 ["Zero before", text("zero_before"), "number"], ["after", text("zero_after"), "number"],
                 ["drift %", (row) => drift(row.zero_drift_percent), "number"],
                 ["Span", text("span_reference"), "number"], ["before", text("span_before"), "number"],
                 ["after", text("span_after"), "number"], ["drift %", (row) => drift(row.span_drift_percent), "number"],
                 ["Deskew", deskew, "number"], ["Concentration", (row) => row.texts.background],
                 ["Leak test", (row) => row.texts.leak]], rows, "dense"));
    if (report.leak_tests.length === 0) return;
    byId("analysers").append(
      table("Leak tests", [["Train", (row) => `${row.train} ${row.number}`], ["Flow", (row) => reading(row.flow), "number"],
                           ["Leak", (row) => reading(row.leak), "number"],
                           ["%", (row) => row.flow?.value && row.leak?.value != null && row.flow.units === row.leak.units
                             ? (row.leak.value / row.flow.value * 100).toFixed(2) : "", "number"],
                           ["Date", (row) => row.date.replace("T", " ")], ["Channels", (row) => row.channels.join(" ")]],
            report.leak_tests));
  }

  function fillTables() {
    byId("statistics").append(table("", [["Channel", named("channel")],
      ...["initial", "mean", "minimum", "maximum", "standard_deviation"].map(
        (name) => [name.replace("_", " "), (row) => row[name] === null ? marked("no value", "missing") : row[name].toFixed(4), "number"]),
      ["Units", named("units")]], report.statistics));
    byId("limits").append(table("", [["Limit", named("limit")], ["Value", named("value"), "number"], ["Units", named("units")],
                                     ["Significant digits", named("digits"), "number"]], report.emission_limits));
    byId("cell-tables").append(
      table("Cell configuration", [["Section", named("section")], ["Option", named("option")], ["Value", named("value")], ["Channel", named("keyword")]], report.cell_configuration),
      table("Overrides of the engine control", [["Module", named("ecm")], ["Variable", named("variable")], ["Value", named("value")]], report.overrides));
    const all = element("details", {}, element("summary", {}, `${report.configuration.length} blocks`));
    for (const block of report.configuration) {
      all.append(element("h3", {}, block.keyword), element("pre", {}, block.entries.map((words) => words.join(" ")).join("\n")));
    }
    byId("configuration").append(all);
  }

  function fillCall() {
    byId("call").append(
      table("Files", [["Argument", named("argument")], ["File", named("file")],
                      ["Bytes", (row) => row.size ?? marked("missing", "missing"), "number"], ["Written", (row) => row.written.replace("T", " ")]], report.files),
      element("details", {}, element("summary", {}, "The words of the call"),
              element("pre", {}, Object.entries(report.call).map(([name, value]) => `${name}=${value}`).join("\n"))));
    for (const file of report.files) {
      for (const problem of file.problems) {
        byId("notes").append(element("li", {class: "missing"}, `${file.file}${problem.line > 0 ? `:${problem.line}` : ""}: ${problem.text}`));
      }
    }
  }

  function fillContents() {
    for (const section of document.querySelectorAll("main > section")) {
      byId("contents").append(element("a", {href: `#${section.id}`}, section.querySelector("h2").textContent));
    }
  }

  async function fillTraces() {
    if (!report.traces.some((trace) => trace.of === "now" && trace.count > 0)) {
      byId("traces").replaceChildren(byId("traces").querySelector("h2"), element("p", {class: "missing"}, "There are no records to draw."));
      return null;
    }
    const view = new Traces.View(report);
    byId("channel-names").append(...[...view.byName.keys()].map((name) => element("option", {value: name})));
    byId("add-panel").addEventListener("click", () => view.addPanel([]));
    byId("whole-test").addEventListener("click", () => view.zoom(...view.extent));
    byId("deskew").addEventListener("change", (event) => view.setDeskew(event.target.checked));
    window.addEventListener("resize", () => view.resize(null));
    window.addEventListener("beforeprint", () => view.prepareToPrint());
    window.addEventListener("afterprint", () => view.showAgain());
    await view.start(Traces.proposal(report, view));
    return view;
  }

  fillHead();
  fillLog();
  fillChanges();
  fillValues();
  fillAnalysers();
  fillTables();
  fillCall();
  fillContents();
  window.quon5Traces = await fillTraces();
  performance.measure("opened", {start: opened, end: performance.now()});
  document.body.dataset.state = "drawn";
})();
