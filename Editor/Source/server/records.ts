// What the server's answers are made of, as Documentation/server.md describes it.

export type Failure =
  | 'cancelled'
  | 'timedOut'
  | 'fellSilent'
  | 'couldNotStart'
  | 'killed'
  | 'offline'
  | 'notAuthorised'
  | 'untrusted'
  | 'locked'
  | 'other';

export interface ClientError {
  readonly domain: string;
  readonly code: number;
  readonly description: string;
  readonly suggestion: string | null;
  readonly codes: readonly number[];
  readonly causes: readonly string[];
  readonly clientText: string | null;
}

/** What every method answers that runs the client: both are null when all is well. */
export interface Outcome {
  readonly error: ClientError | null;
  readonly failure: Failure | null;
}

/** Status words are the client's own. */
export type StatusWord =
  | 'normal'
  | 'none'
  | 'modified'
  | 'added'
  | 'deleted'
  | 'replaced'
  | 'conflicted'
  | 'missing'
  | 'incomplete'
  | 'obstructed'
  | 'unversioned'
  | 'ignored'
  | 'external'
  | 'merged';

export interface Item {
  readonly path: string;
  readonly status: StatusWord;
  readonly property: StatusWord;
  readonly copied?: boolean;
  readonly incoming?: StatusWord;
  readonly incomingProperty?: StatusWord;
  readonly changelist?: string;
  readonly treeConflict?: boolean;
  readonly locked?: boolean;
  readonly lock?: Lock;
  readonly switched?: boolean;
  readonly external?: boolean;
  readonly movedFrom?: string;
  readonly movedTo?: string;
  readonly revision?: number;
}

export interface Lock {
  readonly owner?: string | null;
  readonly comment?: string | null;
  readonly created?: string | null;
}

export type Counts = Readonly<Record<string, number>>;

export interface Branch {
  readonly name: string;
  readonly isTrunk: boolean;
}

export interface WorkingCopyFacts {
  readonly workingCopy: string;
  readonly url: string;
  readonly repositoryRoot: string;
  readonly repositoryUUID: string;
  readonly revision: number;
  readonly branch: Branch | null;
  readonly nested: readonly string[];
  readonly externals: readonly string[];
}

export interface PathAction {
  readonly path: string;
  readonly action: string;
}

export interface Settled {
  readonly path: string;
  readonly kind: string;
  readonly theirs: string | null;
}

export interface Conflict {
  readonly path: string;
  readonly kind: string;
}

export interface UpdateResult extends Outcome {
  readonly revision: number | null;
  readonly items: readonly PathAction[];
  readonly settled: readonly Settled[];
  readonly conflicts: readonly Conflict[];
}

export type PlanKind = 'commit' | 'revert' | 'remove' | 'update' | 'merge' | 'switch';

export interface CommitGroup {
  readonly workingCopy: string;
  readonly paths: readonly string[];
}

export interface Plan extends Outcome {
  readonly items: readonly PathAction[];
  readonly alsoTaken: readonly string[];
  readonly lost: readonly string[];
  readonly needsParents: readonly string[];
  readonly groups: readonly CommitGroup[];
  readonly decidedForMine: readonly string[];
}

export interface ItemsResult extends Outcome {
  readonly items: readonly PathAction[];
}

export interface LogEntry {
  readonly revision: number;
  readonly author: string | null;
  readonly date: string | null;
  readonly message: string | null;
  readonly files?: readonly PathAction[];
}

export interface LogResult extends Outcome {
  readonly entries: readonly LogEntry[];
  readonly next: number | null;
}

export interface BlameRevision {
  readonly revision: number;
  readonly author: string | null;
  readonly date: string | null;
}

export interface BlameResult extends Outcome {
  readonly revisions: readonly BlameRevision[];
  readonly lines: readonly number[];
}

export type Revision = 'BASE' | 'HEAD' | number;
export type Place = { readonly path: string } | { readonly url: string };

export interface RepositoryEntry {
  readonly name: string;
  readonly kind: 'file' | 'dir';
  readonly size?: number;
  readonly revision?: number;
  readonly author?: string | null;
  readonly date?: string | null;
  readonly url: string;
  readonly lock?: Lock;
}

export interface BranchEntry extends Branch {
  readonly url: string;
}

export interface Property {
  readonly name: string;
  /** Null where it is not text; `base64` then holds its bytes. */
  readonly value: string | null;
  readonly base64?: string;
}

export interface PatchResult extends ItemsResult {
  readonly conflicts: readonly Conflict[];
}

/** One side of a comparison; without a revision, what is on disk or the newest. */
export type DifferenceSide = Place & { readonly revision?: Revision };

export interface Difference {
  readonly path: string;
  readonly status: StatusWord;
  readonly property: StatusWord;
  readonly kind: 'file' | 'dir';
}

/** The files that the client has laid beside one in conflict. */
export interface ConflictSides {
  readonly kind: string;
  readonly base: string | null;
  readonly mine: string | null;
  readonly theirs: string | null;
  /** Where it says in words which values of which properties did not go together. */
  readonly properties: string | null;
}

export interface Info {
  readonly path: string;
  readonly url: string | null;
  readonly revision: number | null;
  readonly conflicts: readonly ConflictSides[];
}

/** A file that could not be brought back, and where its content was put instead. */
export interface NotRestored {
  readonly path: string;
  readonly reason: string;
  readonly beside: string | null;
}

export interface UndoResult extends ItemsResult {
  /** What was undone; null where nothing was kept. */
  readonly step: string | null;
  readonly notRestored: readonly NotRestored[];
  /** What the person has to see to, such as properties. */
  readonly notes: readonly string[];
}
