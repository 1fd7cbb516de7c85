// The traces: unpacks the values of the page and draws them, panels under one another with one time
// axis. dygraphs is handed the smallest and the largest value of each pixel column in sight, or the
// records themselves where there are no more of them than columns.
"use strict";

const Traces = (() => {
  const COLOURS = ["#0550ae", "#c4432b", "#1a7f37", "#8250df", "#9a6700", "#0a7d8c", "#bf3989", "#57606a"];
  const EARLIER = "#f0883e";
  const AXIS_WIDTH = 62;
  const PRINT_WIDTH = 780;  // of A4 upright; browsers shrink a little to fit
  const MAX_PANELS = 7;
  const MAX_SERIES = 6;

  // The values of one channel, unpacked when they are first asked for.
  async function unpack(trace) {
    const packed = Uint8Array.from(atob(document.getElementById(trace.id).textContent),
                                   (c) => c.charCodeAt(0));
    const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream("deflate"));
    const bytes = new Uint8Array(await new Response(stream).arrayBuffer());
    const count = trace.count;
    const values = new Float64Array(count);
    if (trace.width === 0) {
      const raw = new Uint8Array(values.buffer);
      for (let i = 0; i < count; ++i) {
        for (let plane = 0; plane < 8; ++plane) raw[8 * i + plane] = bytes[plane * count + i];
      }
      return values;
    }
    const scale = 10 ** trace.decimals;
    let last = 0;
    for (let i = 0; i < count; ++i) {
      let folded = 0;
      let missing = true;
      for (let plane = trace.width - 1; plane >= 0; --plane) {
        const byte = bytes[plane * count + i];
        folded = folded * 256 + byte;
        if (byte !== 255) missing = false;
      }
      if (!missing) last += folded % 2 ? -(folded + 1) / 2 : folded / 2;
      values[i] = missing ? NaN : last / scale;
    }
    return values;
  }

  // The first record at or after `time`.
  function firstFrom(times, time) {
    let low = 0;
    let high = times.length;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (times[middle] < time) low = middle + 1; else high = middle;
    }
    return low;
  }

  const rises = (times) => times.every((time, i) => i === 0 ? !isNaN(time) : times[i - 1] < time);

  // Smallest and largest value of each of `columns` columns from `from` on, in the order in which
  // they come, as [time, value] pairs; NaN for a column without a finite value, nothing for an empty one.
  function extremes(series, from, to, columns) {
    const {times, values, shift} = series;
    const width = (to - from) / columns;
    const points = [];
    let record = firstFrom(times, from - width + shift);
    for (let column = -1; column <= columns; ++column) {
      const end = from + (column + 1) * width + shift;
      const begin = record;
      let low = -1;
      let high = -1;
      for (; record < times.length && times[record] < end; ++record) {
        const value = values[record];
        if (!isFinite(value)) continue;
        if (low < 0 || value < values[low]) low = record;
        if (high < 0 || value > values[high]) high = record;
      }
      if (record === begin) continue;
      const at = from + column * width;
      const [first, second] = low <= high ? [low, high] : [high, low];
      points.push([at + width / 4, low < 0 ? NaN : values[first]],
                  [at + width * 3 / 4, low < 0 ? NaN : values[second]]);
    }
    return points;
  }

  // The records in sight and the one beyond each end. An infinite value is a gap: no scale could show it.
  function records(series, from, to) {
    const {times, values, shift} = series;
    const begin = Math.max(0, firstFrom(times, from + shift) - 1);
    const end = Math.min(times.length, firstFrom(times, to + shift) + 1);
    const points = [];
    for (let i = begin; i < end; ++i) points.push([times[i] - shift, isFinite(values[i]) ? values[i] : NaN]);
    return points;
  }

  // Rows for dygraphs: a time and a value of each series, null where a series has none then.
  function rowsOf(allSeries, from, to, columns) {
    const inSight = Math.max(...allSeries.map(
        ({times, shift}) => firstFrom(times, to + shift) - firstFrom(times, from + shift)));
    const rows = new Map();
    allSeries.forEach((series, k) => {
      const points = inSight > 2 * columns ? extremes(series, from, to, columns) : records(series, from, to);
      for (const [time, value] of points) {
        let row = rows.get(time);
        if (row === undefined) {
          row = new Array(allSeries.length + 1).fill(null);
          row[0] = time;
          rows.set(time, row);
        }
        row[k + 1] = value;
      }
    });
    return [...rows.values()].sort((a, b) => a[0] - b[0]);
  }

  class Panel {
    constructor(traces) {
      this.traces = traces;
      this.channels = [];  // positions in report.composite.channels
      this.series = [];
      this.graph = null;
      this.head = element("div", {class: "panel-head"});
      this.plot = element("div", {class: "plot"});
      this.cursor = element("div", {class: "cursor"});
      this.search = element("input", {class: "add", type: "search", list: "channel-names",
                                      placeholder: "add a channel", "aria-label": "add a channel"});
      this.search.addEventListener("change", () => {
        const channel = traces.byName.get(this.search.value);
        if (channel === undefined) return;
        this.search.value = "";
        this.add([channel]);
      });
      const close = element("button", {class: "close", type: "button", title: "remove the panel"}, "✕");
      close.addEventListener("click", () => traces.remove(this));
      this.frame = element("div", {class: "plot-frame"}, this.plot, this.cursor);
      this.node = element("div", {class: "panel"}, this.head, this.frame);
      this.head.append(this.search, close);
      this.frame.addEventListener("mousemove", (event) => {
        if (this.graph === null) return;
        const x = event.clientX - this.plot.getBoundingClientRect().left;
        traces.showCursor(this.graph.toDataXCoord(x));
      });
      this.frame.addEventListener("mouseleave", () => traces.showCursor(null));
    }

    async add(channels) {
      for (const channel of channels) if (!this.channels.includes(channel)) this.channels.push(channel);
      await this.load();
    }

    async load() {
      const series = [];
      for (const channel of this.channels) {
        for (const [earlier, own] of this.traces.of(channel)) {
          const values = await own.values;
          series.push({channel, earlier, times: await own.times, values, decimals: own.trace.decimals});
        }
      }
      this.series = series;
      this.rebuild();
    }

    rebuild() {
      const traces = this.traces;
      const channels = traces.channels;
      if (this.graph !== null) this.graph.destroy();
      this.graph = null;
      this.head.querySelectorAll(".series").forEach((node) => node.remove());
      if (this.series.length === 0) return;
      const firstUnits = channels[this.series[0].channel].units;
      const options = {};
      const colours = [];
      this.series.forEach((series, k) => {
        const channel = channels[series.channel];
        const colour = series.earlier ? EARLIER : COLOURS[this.channels.indexOf(series.channel) % COLOURS.length];
        const right = channel.units !== firstUnits;
        colours.push(colour);
        series.colour = colour;
        options["s" + k] = {axis: right ? "y2" : "y1", strokeWidth: series.earlier ? 3 : 1.1};
        this.head.insertBefore(this.legend(series, channel, colour, right), this.search);
      });
      const twoAxes = this.series.some((series) => channels[series.channel].units !== firstUnits);
      this.shift();
      this.graph = new Dygraph(this.plot, this.rows(), {
        labels: ["time", ...this.series.map((_, k) => "s" + k)], series: options, colors: colours,
        dateWindow: [...traces.window], legend: "never", connectSeparatedPoints: true, animatedZooms: false,
        highlightCircleSize: 0, rightGap: twoAxes ? 5 : AXIS_WIDTH + 5, axisLineColor: "#8c959f",
        gridLineColor: "#e4e8ec", digitsAfterDecimal: 6,
        axes: {y: {axisLabelWidth: AXIS_WIDTH}, y2: {axisLabelWidth: AXIS_WIDTH, drawGrid: false, independentTicks: true}},
        underlayCallback: (canvas, area, graph) => traces.shade(canvas, area, graph, traces.panels[0] === this),
        zoomCallback: (from, to) => traces.zoom(from, to),
        interactionModel: {...Dygraph.defaultInteractionModel, dblclick: () => traces.zoom(...traces.extent)},
      });
      ++traces.drawn;
    }

    legend(series, channel, colour, right) {
      const swatch = element("span", {class: "swatch"});
      swatch.style.background = colour;
      series.valueNode = element("span", {class: "value"});
      const node = element("span", {class: "series"}, swatch,
                           element("b", {}, channel.name + (series.earlier ? " (earlier)" : "")), " ",
                           series.valueNode, " ",
                           element("span", {class: "soft"}, channel.units + (right ? " (right)" : "")));
      if (!series.earlier) {
        const remove = element("button", {type: "button", title: "remove the channel"}, "✕");
        remove.addEventListener("click", () => {
          this.channels = this.channels.filter((other) => other !== series.channel);
          this.load();
        });
        node.append(remove);
      }
      return node;
    }

    shift() {
      for (const series of this.series) {
        const seconds = this.traces.channels[series.channel].deskew_seconds;
        series.shift = this.traces.deskew && !this.traces.byRecord && seconds !== null ? seconds : 0;
      }
    }

    rows() {
      const columns = Math.max(100, Math.round(this.plot.clientWidth - 2 * AXIS_WIDTH));
      return rowsOf(this.series, ...this.traces.window, columns);
    }

    draw() {
      if (this.graph === null) return;
      const whole = this.traces.isWhole();
      this.graph.updateOptions({file: this.rows(), dateWindow: [...this.traces.window],
                                ...(whole ? {valueRange: null} : {})});
    }

    showCursor(time) {
      this.cursor.style.display = time === null || this.graph === null ? "none" : "block";
      if (this.graph !== null && time !== null) this.cursor.style.left = this.graph.toDomXCoord(time) + "px";
      for (const series of this.series) {
        if (time === null) {
          series.valueNode.textContent = "";
          continue;
        }
        const at = time + series.shift;
        let record = firstFrom(series.times, at);
        if (record > 0 && (record === series.times.length || at - series.times[record - 1] < series.times[record] - at)) --record;
        const value = series.values[record];
        series.valueNode.textContent = isFinite(value) ? value.toFixed(Math.min(series.decimals, 20)) : String(value);
      }
    }

    // The same drawing as SVG over the canvas: browsers print a canvas coarsely, or empty.
    drawForPrint() {
      if (this.graph === null) return;
      const graph = this.graph;
      const area = graph.getArea();
      const node = (tag, attributes) => {
        const made = document.createElementNS("http://www.w3.org/2000/svg", tag);
        for (const [name, value] of Object.entries(attributes)) made.setAttribute(name, value);
        return made;
      };
      const svg = node("svg", {class: "printed", width: this.plot.clientWidth, height: this.plot.clientHeight});
      const clip = `clip-${this.traces.panels.indexOf(this)}`;
      const size = {x: area.x, y: area.y, width: area.w, height: area.h};
      const clipPath = node("clipPath", {id: clip});
      clipPath.append(node("rect", size));
      svg.append(clipPath);
      this.traces.eachShade(area, graph, (x, width, phase) => {
        if (phase !== "cycle") svg.append(node("rect", {x, y: area.y, width, height: area.h, fill: "#e9edf1"}));
      });
      svg.append(node("rect", {...size, fill: "none", stroke: "#8c959f"}));
      const rows = this.rows();
      this.series.forEach((series, k) => {
        const axis = graph.getPropertiesForSeries("s" + k).axis - 1;
        let path = "";
        let pen = "M";
        for (const row of rows) {
          const value = row[k + 1];
          if (value === null) continue;
          if (isNaN(value)) {
            pen = "M";
            continue;
          }
          path += `${pen}${graph.toDomXCoord(row[0]).toFixed(1)} ${graph.toDomYCoord(value, axis).toFixed(1)}`;
          pen = "L";
        }
        svg.append(node("path", {d: path, fill: "none", stroke: series.colour, "clip-path": `url(#${clip})`,
                                 "stroke-width": series.earlier ? 1.8 : 0.8}));
      });
      this.frame.append(svg);
    }

    resize(width) {
      this.plot.style.width = width === null ? "" : width + "px";
      if (this.graph !== null) {
        this.graph.resize();
        this.draw();
      }
    }
  }

  class View {
    constructor(report) {
      this.channels = report.composite.channels;
      this.phases = report.composite.phases;
      this.traces = {now: new Map(), earlier: new Map()};
      for (const trace of report.traces) this.traces[trace.of].set(trace.channel, {trace});
      this.byName = new Map();
      for (const channel of this.traces.now.keys()) {
        if (channel > 0) this.byName.set(this.channels[channel].name, channel);
      }
      this.panels = [];
      this.deskew = false;
      this.drawn = 0;
    }

    // What is to be drawn of a channel, the earlier trace below its own.
    of(channel) {
      const found = [];
      for (const [earlier, kind] of [[true, "earlier"], [false, "now"]]) {
        const own = this.traces[kind].get(channel);
        if (own === undefined) continue;
        own.values ??= unpack(own.trace);
        own.times ??= this.timesOf(kind);
        found.push([earlier, own]);
      }
      return found;
    }

    async timesOf(kind) {
      const own = this.traces[kind].get(0);
      own.values ??= unpack(own.trace);
      const times = await own.values;
      return this.byRecord ? times.map((_, i) => i) : times;
    }

    async start(chosen) {
      const own = this.traces.now.get(0);
      own.values = unpack(own.trace);
      const times = await own.values;
      this.byRecord = !rises(times);  // then the records are numbered
      this.extent = this.byRecord ? [0, Math.max(1, times.length - 1)] : [times[0], times[times.length - 1]];
      if (this.extent[0] === this.extent[1]) this.extent = [this.extent[0] - 1, this.extent[1] + 1];
      this.window = [...this.extent];
      for (const channels of chosen) await this.addPanel(channels);
    }

    async addPanel(channels) {
      const panel = new Panel(this);
      this.panels.push(panel);
      document.getElementById("panels").append(panel.node);
      await panel.add(channels);
      return panel;
    }

    remove(panel) {
      this.panels = this.panels.filter((other) => other !== panel);
      if (panel.graph !== null) panel.graph.destroy();
      panel.node.remove();
    }

    isWhole() { return this.window[0] === this.extent[0] && this.window[1] === this.extent[1]; }

    zoom(from, to) {
      const begin = performance.now();
      this.window = [Math.max(from, this.extent[0]), Math.min(to, this.extent[1])];
      for (const panel of this.panels) panel.draw();
      performance.measure("zoom", {start: begin, end: performance.now()});
    }

    // Shows a channel around a time: in a panel that has it, or in a new one.
    async show(name, time) {
      const channel = this.byName.get(name);
      const panel = this.panels.find((one) => one.channels.includes(channel)) ?? await this.addPanel([channel]);
      const half = (this.extent[1] - this.extent[0]) / 40;
      if (time !== null && !this.byRecord) this.zoom(time - half, time + half);
      panel.node.scrollIntoView({block: "center"});
    }

    setDeskew(on) {
      this.deskew = on;
      for (const panel of this.panels) {
        panel.shift();
        panel.draw();
      }
    }

    showCursor(time) { for (const panel of this.panels) panel.showCursor(time); }

    // The width in pixels; null: that of the page.
    resize(width) { for (const panel of this.panels) panel.resize(width); }

    prepareToPrint() {
      this.showCursor(null);
      this.resize(PRINT_WIDTH);
      for (const panel of this.panels) panel.drawForPrint();
    }

    showAgain() {
      document.querySelectorAll(".printed").forEach((node) => node.remove());
      this.resize(null);
    }

    // Calls `draw(left, width, phase)` for each phase in sight.
    eachShade(area, graph, draw) {
      if (this.byRecord) return;
      this.phases.forEach(({phase, from}, k) => {
        const next = this.phases[k + 1];
        const left = Math.max(area.x, graph.toDomXCoord(from));
        const end = area.x + area.w;
        const right = next === undefined ? end : Math.min(end, graph.toDomXCoord(next.from));
        if (right > left) draw(left, right - left, phase);
      });
    }

    shade(canvas, area, graph, named) {
      this.eachShade(area, graph, (left, width, phase) => {
        if (phase !== "cycle") {
          canvas.fillStyle = "#e9edf1";
          canvas.fillRect(left, area.y, width, area.h);
        }
        if (!named || width < 30) return;
        canvas.fillStyle = "#57606a";
        canvas.font = "11px sans-serif";
        canvas.fillText(phase, left + 4, area.y + 12);
      });
    }
  }

  // The panels of a page just opened: channels that differ from the earlier reduction, each alone,
  // then the statistical channels and the analysers, those of the same units and measuring point
  // together.
  function proposal(report, view) {
    const groups = new Map();
    const add = (name, group) => {
      const channel = view.byName.get(name);
      if (channel === undefined || [...groups.values()].some((others) => others.includes(channel))) return;
      const key = JSON.stringify([view.channels[channel].units, group]);
      if (!groups.has(key)) groups.set(key, []);
      if (groups.get(key).length < MAX_SERIES) groups.get(key).push(channel);
    };
    for (const {records, place} of report.changes?.differences ?? []) {
      const name = place.replace(/^channel /, "");
      if (records) add(name, `changed ${name}`);
    }
    for (const {channel} of report.statistics.slice(0, 2)) add(channel, "");
    for (const {channel, stage} of report.analysers) if (stage === "continuous") add(channel, channel.split("_")[0]);
    for (const {channel} of report.statistics) add(channel, "");
    if (groups.size === 0) for (const name of [...view.byName.keys()].slice(0, 3)) add(name, "");
    return [...groups.values()].slice(0, MAX_PANELS);
  }

  return {View, proposal};
})();
