// Elements in one line each.
type Child = Node | string | undefined;

export function element<Name extends keyof HTMLElementTagNameMap>(
  name: Name,
  attributes: Record<string, string> = {},
  ...children: Child[]
): HTMLElementTagNameMap[Name] {
  const made = document.createElement(name);
  return fill(made, attributes, children);
}

export function shape<Name extends keyof SVGElementTagNameMap>(
  name: Name,
  attributes: Record<string, string | number> = {},
  ...children: Child[]
): SVGElementTagNameMap[Name] {
  return fill(document.createElementNS("http://www.w3.org/2000/svg", name), attributes, children);
}

function fill<Made extends Element>(made: Made, attributes: Record<string, string | number>, children: Child[]): Made {
  for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, String(value));
  made.append(...children.filter((child) => child !== undefined));
  return made;
}

export function byId<Found extends HTMLElement>(id: string): Found {
  return document.getElementById(id) as Found;
}
