// Measures a report in the browser and hands the page around its frame what is wrong with it, a line each. The number of papers that
// the product has is in the body's attribute data-papers.
'use strict';
const faults = [];
const fault = (what, element) => faults.push(what + (element ? ': ' + element.textContent.trim().slice(0, 60) : ''));

if (document.documentElement.scrollWidth > document.documentElement.clientWidth)
    fault(`the page is ${document.documentElement.scrollWidth} wide in ${document.documentElement.clientWidth}`);

const papers = document.querySelectorAll('.papers svg');
if (papers.length !== Number(document.body.dataset.papers))
    fault(`${papers.length} papers are drawn of ${document.body.dataset.papers}`);
for (const drawing of document.querySelectorAll('svg')) {
    const box = drawing.querySelector('.page:last-of-type, .page').getBoundingClientRect();
    const wanted = drawing.dataset.width / drawing.dataset.length;
    const frame = drawing.getBoundingClientRect();
    for (const shown of [frame.width / frame.height])
        if (!(Math.abs(shown / wanted - 1) < 0.01)) fault(`sides are ${shown} to 1 and not ${wanted}`, drawing.parentElement);
    if (!(box.width > 4 && box.height > 4)) fault('a paper is too small to see', drawing.parentElement);
    if (!drawing.getAttribute('aria-label')) fault('a drawing has no text in its place', drawing.parentElement);
}

// Elements with text of their own, and the rectangles that their lines take.
const texts = [...document.querySelectorAll('main *')].filter(
    element => [...element.childNodes].some(node => node.nodeType === Node.TEXT_NODE && node.textContent.trim()));
const lines = [];
for (const element of texts) {
    if (element.scrollWidth > element.clientWidth + 1 && getComputedStyle(element).display !== 'inline')
        fault('a text is cut', element);
    for (const node of element.childNodes) {
        if (node.nodeType !== Node.TEXT_NODE || !node.textContent.trim()) continue;
        const range = document.createRange();
        range.selectNodeContents(node);
        for (const box of range.getClientRects()) lines.push({box, element});
    }
}
lines.sort((a, b) => a.box.top - b.box.top);
lines.forEach(({box, element}, index) => {
    if (box.left < -1 || box.right > document.documentElement.clientWidth + 1) fault('a text leaves the page', element);
    for (let next = index + 1; next < lines.length && lines[next].box.top < box.bottom - 4; ++next) {
        const other = lines[next];
        if (other.box.left < box.right - 2 && other.box.right > box.left + 2 && other.box.bottom > box.top + 4)
            fault(`a text lies over "${other.element.textContent.trim().slice(0, 40)}"`, element);
    }
});
for (const {box, element} of lines)
    for (const drawing of papers) {
        const paper = drawing.getBoundingClientRect();
        if (paper.left < box.right - 1 && paper.right > box.left + 1 && paper.top < box.bottom - 4 &&
            paper.bottom > box.top + 4)
            fault('a text lies over a paper', element);
    }

// Contrast of text and ground, as the guidelines for accessible pages define it.
const luminance = colour => {
    const parts = colour.match(/[\d.]+/g).slice(0, 3).map(part => part / 255)
        .map(part => (part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4));
    return 0.2126 * parts[0] + 0.7152 * parts[1] + 0.0722 * parts[2];
};
const groundOf = element => {
    for (let under = element; under; under = under.parentElement) {
        const ground = getComputedStyle(under).backgroundColor;
        if (!/, 0\)$|transparent/.test(ground)) return ground;
    }
    return 'rgb(255, 255, 255)';
};
for (const element of texts) {
    const [low, high] = [luminance(getComputedStyle(element).color), luminance(groundOf(element))].sort((a, b) => a - b);
    if ((high + 0.05) / (low + 0.05) < 4.5) fault('a text has too little contrast', element);
}

let level = 0;
for (const heading of document.querySelectorAll('h1, h2, h3, h4, h5, h6')) {
    const own = Number(heading.tagName[1]);
    if (own > level + 1) fault('a heading skips a level', heading);
    level = own;
}
parent.postMessage([`measured ${lines.length} lines, ${innerWidth} wide`, ...new Set(faults), 'end'].join('\n@@'), '*');
