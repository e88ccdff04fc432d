import type { RepositoryEntry } from '../server/protocol';

/** A row of the repository's tree. */
export interface RepositoryNode {
  readonly url: string;
  readonly repositoryRoot: string;
  readonly entry: RepositoryEntry | null;
}

export function isRepositoryNode(argument: unknown): argument is RepositoryNode {
  return typeof argument === 'object' && argument !== null && 'repositoryRoot' in argument;
}
