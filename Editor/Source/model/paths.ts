/**
 * Whether `path` is `directory` or lies below it. Both are the server's or the editor's absolute
 * paths; nothing else in the extension looks inside a path.
 */
export function contains(directory: string, path: string): boolean {
  return path === directory || path.startsWith(directory === '/' ? '/' : `${directory}/`);
}
