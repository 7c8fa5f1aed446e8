// Keeps the values of a page fresh: asks for them anew while someone looks, and writes them in the
// place of the old ones. A device that does not answer is asked less and less often.
'use strict';

(() => {
  const shown = document.getElementById('live');
  const note = document.getElementById('live_note');
  const calm = 5000;
  const longest = 80000;
  const patience = 10000;
  let delay = calm;
  let timer = 0;
  let isAsking = false;

  // What the reader has marked stays marked.
  const isMarked = () => {
    const marked = getSelection();
    return !marked.isCollapsed && shown.contains(marked.anchorNode);
  };

  const ask = async () => {
    const signal = AbortSignal.timeout(patience);
    const answer = await fetch(shown.dataset.source, { cache: 'no-store', signal });
    if (!answer.ok) {
      throw new Error(`${shown.dataset.source} was answered with ${answer.status}`);
    }
    const page = new DOMParser().parseFromString(await answer.text(), 'text/html');
    if (!isMarked()) {
      shown.replaceChildren(...page.getElementById('live').childNodes);
    }
  };

  const wait = () => {
    clearTimeout(timer);
    if (!document.hidden) {
      timer = setTimeout(update, delay);
    }
  };

  const update = async () => {
    clearTimeout(timer);
    if (isAsking) {
      return;
    }
    isAsking = true;
    try {
      await ask();
      delay = calm;
      note.textContent = '';
    } catch {
      delay = Math.min(2 * delay, longest);
      note.textContent = note.dataset.failed;
    }
    isAsking = false;
    wait();
  };

  document.addEventListener('visibilitychange', () => {
    clearTimeout(timer);
    if (!document.hidden) {
      update();
    }
  });
  document.getElementById('refresh').addEventListener('click', (event) => {
    event.preventDefault();
    update();
  });
  wait();
})();
