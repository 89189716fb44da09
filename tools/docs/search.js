// Search over everything in search-index.js. / goes to the field, arrows choose, Enter opens, Escape leaves.
'use strict';

const field = document.getElementById('search');
const list = document.getElementById('results');
const root = document.body.dataset.root;
const kLimit = 40;
let chosen = 0;

// Lower is better; Infinity for no match. Each word must occur in the name, the class or the text, which of a constant
// begins with its value.
function rank(entry, words) {
  const name = entry.name.toLowerCase();
  const full = entry.of ? `${entry.of.toLowerCase()}.${name}` : name;
  const text = entry.text.toLowerCase();
  const minor = entry.kind === 'constant' || entry.kind === 'section' ? 2 : 0;
  let sum = 0;
  for (const word of words) {
    if (name === word || full === word || text.startsWith(`${word}:`)) sum += minor;
    else if (name.startsWith(word) || full.startsWith(word)) sum += 4 + minor;
    else if (name.includes(word)) sum += 8 + minor;
    else if (full.includes(word)) sum += 12 + minor;
    else if (text.includes(word)) sum += 20 + minor;
    else return Infinity;
  }
  return sum;
}

function find(query) {
  const words = query.toLowerCase().split(/\s+/).filter(Boolean);
  if (words.length === 0) return [];
  return window.searchIndex.map((entry) => ({entry, rank: rank(entry, words)}))
      .filter((each) => each.rank < Infinity)
      .sort((a, b) => a.rank - b.rank || a.entry.name.length - b.entry.name.length)
      .slice(0, kLimit)
      .map((each) => each.entry);
}

function itemOf(entry) {
  const item = document.createElement('li');
  const link = document.createElement('a');
  const text = document.createElement('small');
  item.setAttribute('role', 'option');
  link.href = root + entry.url;
  link.textContent = entry.of ? `${entry.of}.${entry.name}` : entry.name;
  if (entry.kind === 'section') link.textContent = `${entry.of}: ${entry.name}`;
  text.textContent = entry.text ? `${entry.kind}: ${entry.text}` : entry.kind;
  link.append(text);
  item.append(link);
  return item;
}

function choose(index) {
  const items = list.children;
  if (items.length === 0) return;
  chosen = (index + items.length) % items.length;
  for (const item of items) item.classList.toggle('chosen', item === items[chosen]);
  items[chosen].scrollIntoView({block: 'nearest'});
}

function show() {
  const found = find(field.value);
  list.replaceChildren(...found.map(itemOf));
  list.hidden = found.length === 0;
  choose(0);
}

function leave() {
  field.value = '';
  list.hidden = true;
  field.blur();
}

field.addEventListener('input', show);
field.addEventListener('keydown', (event) => {
  if (event.key === 'ArrowDown') choose(chosen + 1);
  else if (event.key === 'ArrowUp') choose(chosen - 1);
  else if (event.key === 'Enter' && !list.hidden) list.children[chosen].querySelector('a').click();
  else if (event.key === 'Escape') leave();
  else return;
  event.preventDefault();
});
list.addEventListener('click', leave);
document.addEventListener('keydown', (event) => {
  if (event.key !== '/' || event.target === field || event.ctrlKey || event.metaKey || event.altKey) return;
  event.preventDefault();
  field.select();
  field.focus();
});
