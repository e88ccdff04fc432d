/**
 * Whether `path` is `directory` or lies below it. Both are the server's or the editor's absolute
 * paths; nothing else in the extension looks inside a path.
 */
export function contains(directory: string, path: string): boolean {
  return path === directory || path.startsWith(directory === '/' ? '/' : `${directory}/`);
}

/** Every directory that one of the paths lies in. */
export function directoriesOf(paths: Iterable<string>): ReadonlySet<string> {
  const found = new Set<string>();
  for (const path of paths) {
    for (let end = path.lastIndexOf('/'); end > 0; end = path.lastIndexOf('/', end - 1)) {
      const directory = path.slice(0, end);
      if (found.has(directory)) break;
      found.add(directory);
    }
  }
  return found;
}
