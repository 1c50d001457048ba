// notices.js - messages that need no panel of their own

import { find, icon, make } from './dom.js';

const kMost = 4;

export function notify(text, level = 'info') {
  const notice = make('div', { class: 'notice', 'data-level': level }, make('p', {}, text));
  const close = make('button', { type: 'button', 'aria-label': 'Dismiss' }, icon('close'));
  close.addEventListener('click', () => notice.remove());
  notice.append(close);
  const notices = find('notices');
  for (const other of notices.querySelectorAll('.notice')) {
    if (other.firstChild.textContent === text) other.remove();
  }
  while (notices.childElementCount >= kMost) notices.firstElementChild.remove();
  notices.append(notice);
  setTimeout(() => notice.remove(), level === 'bad' ? 20000 : 6000);
}

/** Runs what a control orders, which does nothing more until that is done. A failure is shown. */
export async function attempt(control, action) {
  if (control.getAttribute('aria-busy') === 'true') return undefined;
  control.setAttribute('aria-busy', 'true');
  try {
    return await action();
  } catch (error) {
    if (error.name !== 'AbortError') notify(error.message, 'bad');
    return undefined;
  } finally {
    control.removeAttribute('aria-busy');
  }
}
