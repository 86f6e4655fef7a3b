#include "app/intake/report/page_text.h"

namespace program {

const char kPageHead[] = R"page(<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<meta http-equiv="Content-Security-Policy"
  content="default-src 'none'; img-src data:; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<title>Report of a batch</title>
<style>
body { font: 14px/1.4 sans-serif; margin: 1.5em; color: #222; background: #fff }
table { border-collapse: collapse; width: 100% }
th, td { text-align: left; padding: .25em .6em; border-bottom: 1px solid #ddd; vertical-align: top }
th button { font: inherit; font-weight: bold; border: 0; background: none; padding: 0; cursor: pointer }
td.number { text-align: right; white-space: nowrap }
td.path { overflow-wrap: anywhere }
tr.failed td.status { color: #a00; font-weight: bold }
tr.partial td.status { color: #850 }
img { max-width: 96px; max-height: 96px }
#controls { margin: 1em 0; display: flex; gap: 1em; flex-wrap: wrap }
.words { font-size: 12px; color: #555 }
</style>
<h1>Report of a batch</h1>
<p id="summary"></p>
<details><summary>Commonest messages</summary><ul id="messages"></ul></details>
<div id="controls">
<label>Find <input id="find" type="search" placeholder="path, kind, message"></label>
<label>Status <select id="status"><option value="">all</option></select></label>
<label>Kind <select id="kind"><option value="">all</option></select></label>
<span id="shown" role="status"></span>
</div>
<table>
<thead><tr id="heads"></tr></thead>
<tbody id="body"></tbody>
</table>
<p><button id="more" hidden>Show more</button></p>
)page";

const char kPageEnd[] = R"page(<script>
'use strict';
const byId = name => document.getElementById(name);
const rows = JSON.parse(byId('rows').textContent);
const sums = JSON.parse(byId('sums').textContent);
const columns = [
  ['', 'i'], ['Path', 'p'], ['Status', 's'], ['Kind', 'k'], ['Bytes', 'b'],
  ['Seconds', 't'], ['Memory', 'm'], ['Outputs', 'o']];
const step = 200;
let sortKey = '', ascending = true, most = step, found = rows;

const element = (name, text, className) => {
  const made = document.createElement(name);
  if (text !== undefined) made.textContent = text;
  if (className) made.className = className;
  return made;
};
byId('summary').textContent = sums.inputs + ' inputs: ' +
  Object.entries(sums.status).map(([name, count]) => count + ' ' + name).join(', ') +
  (sums.missing ? '; ' + sums.missing + ' missing' : '') +
  (sums.damaged_lines ? '; ' + sums.damaged_lines + ' damaged lines' : '') +
  (sums.pictures_left_out ? '; ' + sums.pictures_left_out + ' pictures left out' : '');
for (const each of sums.messages) {
  byId('messages').append(element('li',
    each.count + ' x ' + each.level + ': ' + each.example.text + ' (' + each.example.path + ')'));
}
for (const [list, key] of [['status', 's'], ['kind', 'k']]) {
  for (const value of [...new Set(rows.map(row => row[key]))].sort()) {
    if (value !== '') byId(list).append(element('option', value));
  }
}
for (const [title, key] of columns) {
  const head = element('th');
  if (title) {
    const button = element('button', title);
    button.onclick = () => {
      ascending = sortKey === key ? !ascending : true;
      sortKey = key;
      for (const other of byId('heads').children) other.removeAttribute('aria-sort');
      head.setAttribute('aria-sort', ascending ? 'ascending' : 'descending');
      look();
    };
    head.append(button);
  }
  byId('heads').append(head);
}
const cells = row => {
  const line = element('tr', undefined, row.s);
  const picture = element('td');
  if (row.i) {
    const image = element('img');
    image.src = 'data:image/png;base64,' + row.i;
    image.alt = '';
    picture.append(image);
  }
  const path = element('td', row.p, 'path');
  for (const words of row.w) path.append(element('div', words, 'words'));
  const outputs = element('td', undefined, 'path');
  for (const each of row.o) outputs.append(element('div', each));
  line.append(picture, path, element('td', row.s + (row.f ? ': ' + row.f : ''), 'status'),
    element('td', row.k), element('td', row.b.toLocaleString(), 'number'),
    element('td', row.t.toFixed(3), 'number'),
    element('td', (row.m / 1048576).toFixed(0) + ' MiB', 'number'), outputs);
  return line;
};
const show = () => {
  byId('body').replaceChildren(...found.slice(0, most).map(cells));
  byId('shown').textContent = Math.min(most, found.length) + ' of ' + found.length + ' shown';
  byId('more').hidden = found.length <= most;
};
const look = () => {
  const text = byId('find').value.toLowerCase();
  const status = byId('status').value, kind = byId('kind').value;
  found = rows.filter(row => (!status || row.s === status) && (!kind || row.k === kind) &&
    (!text || [row.p, row.k, row.f || '', ...row.w].some(each => each.toLowerCase().includes(text))));
  const compare = (one, other) => {
    const a = one[sortKey], b = other[sortKey];
    return typeof a === 'number' ? a - b : String(a) < String(b) ? -1 : String(a) > String(b) ? 1 : 0;
  };
  if (sortKey) found.sort((one, other) => ascending ? compare(one, other) : compare(other, one));
  most = step;
  show();
};
byId('find').oninput = byId('status').onchange = byId('kind').onchange = look;
byId('more').onclick = () => { most += step; show(); };
look();
</script>
</html>
)page";

}  // namespace program
