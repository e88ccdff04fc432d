/** The URL of what the log names by its path in the repository; the log's paths are not escaped. */
export function repositoryUrl(repositoryRoot: string, path: string): string {
  return repositoryRoot + path.split('/').map(encodeURIComponent).join('/');
}
