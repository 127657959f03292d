// The page of `railwright wizard`: it shows the state the server sends (the wizard, the dialogs and
// message boxes over it, the model's groups, the outcome after Finish) and sends the person's
// actions as the event script's events. Every rule of the dialogs stays in the program.
import { ModelView } from './view.js';

const $ = (id) => document.getElementById(id);
const api = (path) => `api/${path}`;

let state = null;
let view = null;
let built = null;          // { name, count, elements: Map(id -> element) } of the wizard's form
let overlays = '';         // a key of the dialogs and boxes shown over the wizard
let polling = true;
let sending = Promise.resolve();

// --- talking to the program -------------------------------------------------------------------

function send(event) {
  // Events go one after the other, in the order the person made them.
  sending = sending.then(async () => {
    try {
      const response = await fetch(api('event'), {
        method: 'POST', headers: { 'Content-Type': 'application/json' }, body: JSON.stringify(event),
      });
      if (!response.ok) {
        toast(`The program refused the request: ${(await response.text()).trim()}`);
        return;
      }
      const answer = await response.json();
      if (answer.refused) {
        toast(answer.refused);
      }
      show(answer.state);
    } catch (error) {
      toast('The wizard cannot be reached.');
    }
  });
  return sending;
}

async function poll() {
  while (polling) {
    try {
      const response = await fetch(api(`state?after=${state ? state.sequence : 0}`), { cache: 'no-store' });
      if (!response.ok) {
        throw new Error(String(response.status));
      }
      show(await response.json());
      if (state.phase === 'done') {
        polling = false;
      }
    } catch (error) {
      polling = false;
      if (!state || state.phase !== 'done') {
        gone('The wizard is no longer running: its command has ended.');
      }
    }
  }
}

// --- showing the state ------------------------------------------------------------------------

function show(next) {
  if (!next || (state && next.sequence <= state.sequence)) {
    return;
  }
  state = next;
  window.railwright.state = state;
  $('model-name').textContent = state.model ? state.model.name : '';
  const phase = $('phase');
  phase.textContent = { wizard: 'Wizard', exporting: 'Exporting…', done: 'Finished' }[state.phase];
  phase.className = `phase ${state.phase}`;

  const wizard = state.stack.find((entry) => entry.kind === 'dialog');
  if (wizard) {
    $('form').hidden = false;
    $('outcome').hidden = true;
    showForm(wizard);
  } else if (state.phase !== 'wizard') {
    $('form').hidden = true;
    showOutcome();
  }
  showOverlays(state.stack.slice(1));
  showTree();
  if (view) {
    view.setPicking(isPicking());
  }
  window.railwright.sequence = state.sequence;
}

// The view picks on the step that identifies parts; elsewhere a click only turns it.
function isPicking() {
  if (!state || state.stack.length !== 1) {
    return false;
  }
  return state.stack[0].controls.some((c) => c.name === 'optSteps' && c.caption === 'Part Identification' && c.value === 1);
}

function scaleFor(dialog) {
  const stage = $('stage');
  const width = stage.clientWidth - 32;
  const height = stage.clientHeight - 32;
  const scale = Math.min(width / Math.max(dialog.width, 1), height / Math.max(dialog.height, 1));
  return Math.max(0.6, Math.min(scale, 2.4));
}

function fontOf(font, scale) {
  if (!font) {
    return '';
  }
  return `${(font.size * 96 / 72 * scale).toFixed(2)}px "${font.name}", Tahoma, "DejaVu Sans", sans-serif`;
}

function eventFor(control, kind, extra = {}) {
  const event = { [kind]: control.name, ...extra };
  if (control.index >= 0) {
    event.index = control.index;
  }
  return event;
}

// Builds the elements of a dialog's controls, nested as their frames nest them.
function buildControls(dialog, host, scale, isWizard) {
  const elements = new Map();
  for (const control of dialog.controls) {
    let element;
    switch (control.kind) {
      case 'textBox': {
        element = document.createElement('div');
        const multiLine = control.height > 40;
        const input = document.createElement(multiLine ? 'textarea' : 'input');
        if (!multiLine) {
          input.type = 'text';
        }
        input.name = control.name;
        const commit = () => {
          const current = element.control;
          if (input.value !== current.text) {
            return send(eventFor(current, 'type', { text: input.value }));
          }
          return sending;
        };
        input.addEventListener('change', commit);
        input.addEventListener('keydown', (event) => {
          if (event.key === 'Enter' && !multiLine) {
            event.preventDefault();
            commit().then(() => pressButton(dialog.defaultButton, dialog));
          }
        });
        element.append(input);
        element.input = input;
        break;
      }
      case 'comboBox': {
        element = document.createElement('div');
        const select = document.createElement('select');
        select.addEventListener('change', () => {
          send(eventFor(element.control, 'select', { text: select.value }));
        });
        element.append(select);
        element.input = select;
        break;
      }
      case 'checkBox':
      case 'optionButton': {
        element = document.createElement('label');
        const input = document.createElement('input');
        input.type = control.kind === 'checkBox' ? 'checkbox' : 'radio';
        input.addEventListener('click', (event) => {
          event.preventDefault();   // the state that comes back decides what is checked
          send(eventFor(element.control, 'click'));
        });
        const caption = document.createElement('span');
        element.append(input, caption);
        element.input = input;
        element.caption = caption;
        if (control.name === 'optSteps') {
          element.classList.add('step');
        }
        break;
      }
      case 'commandButton':
        element = document.createElement('button');
        element.type = 'button';
        element.addEventListener('click', () => send(eventFor(element.control, 'click')));
        break;
      case 'frame':
        element = document.createElement('div');
        element.legend = document.createElement('span');
        element.legend.className = 'legend';
        element.append(element.legend);
        break;
      case 'view':
        element = document.createElement('div');
        if (isWizard) {
          element.dataset.view = 'yes';
        }
        break;
      default:
        element = document.createElement('div');
    }
    element.classList.add('ctl', control.kind);
    element.dataset.name = control.name;
    if (control.index >= 0) {
      element.dataset.index = control.index;
    }
    elements.set(control.id, element);
  }
  for (const control of dialog.controls) {
    const parent = control.container === null ? host : elements.get(control.container);
    parent.append(elements.get(control.id));
  }
  return elements;
}

function updateControls(dialog, elements, scale) {
  for (const control of dialog.controls) {
    const element = elements.get(control.id);
    element.control = control;
    element.hidden = !control.visible;
    Object.assign(element.style, {
      left: `${control.left * scale}px`, top: `${control.top * scale}px`,
      width: `${control.width * scale}px`, height: `${control.height * scale}px`,
      font: fontOf(control.font, scale),
    });
    element.title = control.toolTip || '';
    element.classList.toggle('disabled', !control.enabled);
    element.classList.toggle('default', dialog.defaultButton === control.id);
    const tab = control.kind === 'label' || control.kind === 'frame' || control.kind === 'view' ? -1 : control.tabIndex + 1;
    switch (control.kind) {
      case 'label':
        element.textContent = control.caption;
        break;
      case 'textBox':
        if (document.activeElement !== element.input) {
          element.input.value = control.text;
        }
        element.input.disabled = !control.enabled;
        element.input.tabIndex = tab;
        break;
      case 'comboBox': {
        const select = element.input;
        const wanted = JSON.stringify(control.list);
        if (select.dataset.list !== wanted) {
          select.replaceChildren(...control.list.map((entry) => new Option(entry, entry)));
          select.dataset.list = wanted;
        }
        select.selectedIndex = control.listIndex;
        select.disabled = !control.enabled;
        select.tabIndex = tab;
        break;
      }
      case 'checkBox':
      case 'optionButton':
        element.caption.textContent = control.caption;
        element.input.checked = control.value === 1;
        element.input.disabled = !control.enabled;
        element.input.tabIndex = tab;
        element.classList.toggle('checked', control.value === 1);
        break;
      case 'commandButton':
        element.textContent = control.caption;
        element.disabled = !control.enabled;
        element.tabIndex = tab;
        break;
      case 'frame':
        element.legend.textContent = control.caption;
        element.legend.hidden = !control.caption;
        element.classList.toggle('captioned', Boolean(control.caption));
        break;
      default:
        break;
    }
  }
}

function pressButton(id, dialog) {
  if (id === null || id === undefined) {
    return;
  }
  const button = dialog.controls[id];
  if (button && button.visible && button.enabled) {
    send(eventFor(button, 'click'));
  }
}

function showForm(dialog) {
  const form = $('form');
  const scale = scaleFor(dialog);
  if (!built || built.name !== dialog.name || built.count !== dialog.controls.length) {
    form.replaceChildren();
    built = { name: dialog.name, count: dialog.controls.length, elements: buildControls(dialog, form, scale, true) };
    const host = form.querySelector('[data-view="yes"]');
    if (host) {
      attachView(host);
    }
  }
  built.scale = scale;
  form.style.width = `${dialog.width * scale}px`;
  form.style.height = `${dialog.height * scale}px`;
  form.style.font = fontOf(dialog.font, scale);
  updateControls(dialog, built.elements, scale);
  if (view) {
    view.resize();
  }
}

const ICON_TEXT = { information: 'i', exclamation: '!', critical: '×', question: '?', none: '' };

function showOverlays(entries) {
  const layer = $('modals');
  const key = JSON.stringify(entries.map((entry) => entry.kind === 'question' ? entry.text : entry.name));
  if (key !== overlays) {
    layer.replaceChildren();
    overlays = key;
    for (const entry of entries) {
      const backdrop = document.createElement('div');
      backdrop.className = 'backdrop';
      const win = document.createElement('div');
      win.className = entry.kind === 'question' ? 'window msgbox' : 'window dialog';
      win.setAttribute('role', entry.kind === 'question' ? 'alertdialog' : 'dialog');
      win.setAttribute('aria-modal', 'true');
      const title = document.createElement('div');
      title.className = 'title';
      title.textContent = entry.caption;
      const body = document.createElement('div');
      body.className = 'body';
      win.append(title, body);
      if (entry.kind === 'question') {
        const icon = document.createElement('div');
        icon.className = `icon ${entry.icon}`;
        icon.textContent = ICON_TEXT[entry.icon];
        icon.hidden = entry.icon === 'none';
        const text = document.createElement('div');
        text.className = 'text';
        text.textContent = entry.text;
        body.append(icon, text);
        const buttons = document.createElement('div');
        buttons.className = 'buttons';
        for (const answer of entry.buttons === 'yesNo' ? ['Yes', 'No'] : ['OK']) {
          const button = document.createElement('button');
          button.textContent = answer;
          button.dataset.answer = answer;
          button.className = answer === 'No' ? '' : 'primary';
          button.addEventListener('click', () => send({ answer }));
          buttons.append(button);
        }
        win.append(buttons);
      } else {
        win.entry = entry;
      }
      layer.append(backdrop, win);
    }
    const first = layer.querySelector('.window:last-child button');
    if (first) {
      first.focus();
    }
  }
  // The dialogs over the wizard (frmWarn) are laid out from their state as the wizard is.
  for (const win of layer.querySelectorAll('.window.dialog')) {
    const entry = entries.find((e) => e.kind === 'dialog' && e.name === win.entry.name);
    if (!entry) {
      continue;
    }
    const body = win.querySelector('.body');
    const scale = Math.min(1.4, scaleFor(entry));
    if (!win.elements) {
      win.elements = buildControls(entry, body, scale, false);
    }
    body.style.width = `${entry.width * scale}px`;
    body.style.height = `${entry.height * scale}px`;
    body.style.font = fontOf(entry.font, scale);
    updateControls(entry, win.elements, scale);
    win.entry = entry;
  }
}

document.addEventListener('keydown', (event) => {
  if (!state || !state.stack.length) {
    return;
  }
  const top = state.stack[state.stack.length - 1];
  if (top.kind !== 'dialog') {
    return;
  }
  if (event.key === 'Escape') {
    pressButton(top.cancelButton, top);
  } else if (event.key === 'Enter' && !(event.target instanceof HTMLInputElement) &&
             !(event.target instanceof HTMLTextAreaElement) && !(event.target instanceof HTMLButtonElement)) {
    pressButton(top.defaultButton, top);
  }
});

// --- the groups tree --------------------------------------------------------------------------

let treeKey = '';
let lastNames = new Map();
function showTree() {
  const groups = state.groups || [];
  const key = JSON.stringify(groups);
  if (key === treeKey) {
    return;
  }
  treeKey = key;
  const lists = new Map();
  const root = $('tree');
  root.replaceChildren();
  for (const group of groups) {
    const item = document.createElement('li');
    const label = document.createElement('span');
    label.textContent = group.index === 0 ? (group.name || 'Scene') : group.name;
    label.dataset.group = group.index;
    if (lastNames.size && lastNames.get(group.index) !== group.name) {
      label.classList.add('changed');
    }
    label.addEventListener('mouseenter', () => view && view.highlight(group.index));
    label.addEventListener('mouseleave', () => view && view.highlight(-1));
    item.append(label);
    const children = document.createElement('ul');
    item.append(children);
    lists.set(group.index, children);
    (group.parent >= 0 ? lists.get(group.parent) : root).append(item);
  }
  lastNames = new Map(groups.map((g) => [g.index, g.name]));
}

function markTree(index) {
  for (const label of $('tree').querySelectorAll('span[data-group]')) {
    label.classList.toggle('hover', Number(label.dataset.group) === index);
  }
}

// --- the 3D view ------------------------------------------------------------------------------

function attachView(host) {
  if (!view) {
    view = new ModelView({
      onPick: (index) => send({ pick: index }),
      onHover: markTree,
      groupName: (index) => (state.groups || []).find((g) => g.index === index)?.name,
    });
    view.load(state.model.file).then(() => {
      window.railwright.viewReady = true;
    }).catch((error) => {
      toast(`The model cannot be shown: ${error.message || error}`);
      window.railwright.viewReady = true;
    });
  }
  view.mount(host);
  view.setPicking(isPicking());
}

// --- the outcome ------------------------------------------------------------------------------

function formatBytes(bytes) {
  if (bytes < 1024) {
    return `${bytes} B`;
  }
  const units = ['KiB', 'MiB', 'GiB'];
  let value = bytes;
  let unit = -1;
  while (value >= 1024 && unit < units.length - 1) {
    value /= 1024;
    unit += 1;
  }
  return `${value.toFixed(value < 10 ? 1 : 0)} ${units[unit]}`;
}

function element(tag, className, text) {
  const made = document.createElement(tag);
  if (className) {
    made.className = className;
  }
  if (text !== undefined) {
    made.textContent = text;
  }
  return made;
}

function showOutcome() {
  const box = $('outcome');
  box.hidden = false;
  box.replaceChildren();
  const outcome = state.outcome;
  const done = state.phase === 'done';
  box.append(element('h1', '', done ? (outcome.finished ? 'Finished' : 'The wizard was cancelled') : 'Exporting…'));
  const summary = element('div', 'card');
  if (!done) {
    const progress = state.progress;
    summary.append(element('div', 'status-line', progress ? `${progress.task} ${progress.done}/${progress.total} ${progress.item}` : 'The exports are running.'));
    const bar = element('div', 'progress');
    const fill = element('div');
    fill.style.width = progress && progress.total ? `${100 * progress.done / progress.total}%` : '15%';
    bar.append(fill);
    summary.append(bar);
  } else {
    const ok = outcome.status === 0;
    summary.append(element('div', `status-line ${ok ? 'ok' : 'failed'}`,
      ok ? `Every export succeeded; ${outcome.saved}.` : `${outcome.saved}.`));
  }
  box.append(summary);

  if (state.messages.length) {
    box.append(element('h2', '', 'Messages'));
    const list = element('ul', 'messages card');
    for (const message of state.messages) {
      const item = element('li');
      const icon = element('span', `icon ${message.icon}`, ICON_TEXT[message.icon]);
      icon.hidden = message.icon === 'none';
      const text = element('span', '', message.text + (message.buttons === 'yesNo' ? `  → ${message.answer}` : ''));
      item.append(icon, text);
      list.append(item);
    }
    box.append(list);
  }
  if (done && outcome.files.length) {
    box.append(element('h2', '', `Files written (${outcome.files.length})`));
    const table = element('table', 'files card');
    for (const file of outcome.files) {
      const row = element('tr');
      row.append(element('td', 'path', file.path), element('td', 'size', formatBytes(file.bytes)));
      table.append(row);
    }
    box.append(table);
  }
  if (done) {
    for (const report of outcome.reports) {
      box.append(element('h2', '', 'Export report'));
      const card = element('div', 'card');
      card.append(element('pre', 'report', report));
      box.append(card);
    }
  }
}

// --- around the page --------------------------------------------------------------------------

let toastTimer = 0;
function toast(text) {
  const box = $('toast');
  box.textContent = text;
  box.classList.add('shown');
  clearTimeout(toastTimer);
  toastTimer = setTimeout(() => box.classList.remove('shown'), 4000);
}

function gone(text) {
  $('gone-text').textContent = text;
  $('gone').hidden = false;
}

$('close-page').addEventListener('click', async () => {
  polling = polling && state && state.phase !== 'wizard';
  try {
    await fetch(api('close'), { method: 'POST', headers: { 'Content-Type': 'application/json' }, body: '' });
  } catch (error) {
    // The command may have ended already.
  }
  if (!state || state.phase !== 'done') {
    polling = true;
    return;
  }
  gone('You can close this tab.');
});

window.addEventListener('resize', () => {
  if (state) {
    built && state.stack.length && showForm(state.stack[0]);
  }
});

// Hooks for the browser test and for debugging in the console.
window.railwright = {
  state: null,
  sequence: 0,
  viewReady: false,
  project: (index) => (view ? view.project(index) : null),
};

poll();
