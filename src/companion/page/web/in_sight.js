// Elements that are filled when they come into sight: a file of 70,000 marked lines opens at once.

const undrawn = new Map();

const sight = new IntersectionObserver((entries) => {
  entries.filter(({ isIntersecting }) => isIntersecting).forEach(({ target }) => drawNow(target));
}, { rootMargin: '800px' });

function drawNow(element) {
  const draw = undrawn.get(element);
  if (draw) {
    undrawn.delete(element);
    sight.unobserve(element);
    element.style.minHeight = '';
    element.append(...draw());
  }
}

// What was taken out of the page is not kept for being drawn.
function forgetUndrawn() {
  for (const element of undrawn.keys()) {
    if (!element.isConnected) {
      undrawn.delete(element);
      sight.unobserve(element);
    }
  }
}

// An element of about so many rem for which `draw` gives the content.
function drawnInSight(tag, className, height, draw) {
  const element = make(tag, { className });
  element.style.minHeight = `${height}rem`;
  undrawn.set(element, draw);
  sight.observe(element);
  return element;
}
