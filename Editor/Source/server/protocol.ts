// The server's methods, as Documentation/server.md describes them. Types alone: what is not here
// the extension does not use.

import type {
  BlameResult,
  BranchEntry,
  Counts,
  Difference,
  DifferenceSide,
  Info,
  Item,
  ItemsResult,
  LogResult,
  Outcome,
  PatchResult,
  Place,
  Plan,
  PlanKind,
  Property,
  RepositoryEntry,
  Revision,
  UndoResult,
  UpdateResult,
  WorkingCopyFacts,
} from './records';

export type * from './records';

export interface InitializeResult {
  readonly serverInfo: { readonly name: string; readonly version: string };
  readonly client: { readonly path: string | null; readonly version: string | null };
  readonly capabilities: {
    readonly methods: readonly string[];
    readonly requestTypes: readonly unknown[];
  };
}

interface Tokens {
  readonly workDoneToken?: string;
  /** No person asked for it: it never raises a question. */
  readonly background?: boolean;
}

interface Call<P, R> {
  readonly params: P & Tokens;
  readonly result: R;
}

interface Paths {
  readonly paths: readonly string[];
}

interface FromTo {
  readonly from: string;
  readonly to: string;
}

interface AtRoot {
  readonly workingCopy: string;
}

type LogParams = Place & {
  readonly from?: Revision;
  readonly to?: Revision;
  readonly limit: number;
  readonly files?: boolean;
  readonly stopOnCopy?: boolean;
};

/** The requests that the extension sends. */
export interface Requests {
  'workingCopy/open': Call<{ readonly path: string }, (WorkingCopyFacts & Partial<Outcome>) | null>;
  'workingCopy/close': Call<AtRoot, null>;
  'workingCopy/status': Call<
    AtRoot & { readonly refresh?: boolean; readonly includeIgnored?: boolean },
    Outcome & {
      readonly generation: number;
      readonly items: readonly Item[];
      readonly counts: Counts;
    }
  >;
  'workingCopy/incoming': Call<AtRoot, Outcome & { readonly items: readonly Item[] }>;
  'workingCopy/cleanup': Call<Paths, ItemsResult>;
  'workingCopy/update': Call<Paths & { readonly revision?: Revision }, UpdateResult>;
  'workingCopy/switch': Call<AtRoot & { readonly url: string }, UpdateResult>;
  'workingCopy/checkout': Call<{ readonly url: string; readonly path: string }, UpdateResult>;
  'change/plan': Call<Paths & { readonly kind: PlanKind; readonly url?: string }, Plan>;
  'change/commit': Call<
    Paths & { readonly message: string; readonly alsoTaken?: boolean },
    Outcome & { readonly revision: number | null }
  >;
  'change/changelist': Call<Paths & { readonly name: string | null }, ItemsResult>;
  'change/patch': Call<AtRoot & { readonly base64: string }, PatchResult>;
  'property/list': Call<Place, Outcome & { readonly properties: readonly Property[] }>;
  'property/set': Call<
    Paths & { readonly name: string; readonly value: string | null },
    ItemsResult
  >;
  'lock/get': Call<Paths & { readonly message?: string; readonly steal?: boolean }, ItemsResult>;
  'lock/release': Call<Paths & { readonly force?: boolean }, ItemsResult>;
  'workingCopy/relocate': Call<AtRoot & { readonly url: string }, Outcome>;
  'workingCopy/info': Call<Paths, Outcome & { readonly items: readonly Info[] }>;
  'history/setMessage': Call<
    Place & { readonly revision: number; readonly message: string },
    Outcome
  >;
  'diff/summary': Call<
    { readonly from: DifferenceSide; readonly to: DifferenceSide },
    Outcome & { readonly items: readonly Difference[] }
  >;
  'repository/import': Call<
    { readonly path: string; readonly url: string; readonly message: string },
    Outcome & { readonly revision: number | null }
  >;
  'change/add': Call<Paths, ItemsResult>;
  'change/remove': Call<Paths, ItemsResult>;
  'change/revert': Call<Paths & { readonly notKept?: boolean }, ItemsResult>;
  'change/undo': Call<AtRoot, UndoResult>;
  'change/resolve': Call<
    Paths & { readonly accept: 'working' | 'mine' | 'theirs' | 'base' },
    ItemsResult
  >;
  'change/ignore': Call<Paths, ItemsResult>;
  'change/unignore': Call<Paths, ItemsResult>;
  'change/move': Call<FromTo, ItemsResult>;
  'change/copy': Call<FromTo, ItemsResult>;
  'change/adoptMove': Call<FromTo, ItemsResult>;
  'file/content': Call<
    Place & { readonly revision: Revision },
    Outcome & { readonly base64: string | null }
  >;
  'file/blame': Call<Place & { readonly revision?: Revision }, BlameResult>;
  'history/log': Call<LogParams, LogResult>;
  'history/search': Call<
    LogParams & {
      readonly author?: string;
      readonly text?: string;
      readonly since?: string;
      readonly until?: string;
    },
    LogResult
  >;
  'branch/list': Call<AtRoot, Outcome & { readonly branches: readonly BranchEntry[] }>;
  'branch/recordMerge': Call<AtRoot & { readonly url: string }, ItemsResult>;
  'branch/merge': Call<AtRoot & { readonly url: string }, UpdateResult>;
  'branch/create': Call<AtRoot & { readonly name: string; readonly message: string }, Outcome>;
  'branch/delete': Call<AtRoot & { readonly url: string; readonly message: string }, Outcome>;
  'tag/create': Call<AtRoot & { readonly name: string; readonly message: string }, Outcome>;
  'diff/text': Call<Paths, Outcome & { readonly base64: string | null }>;
  'repository/list': Call<
    { readonly url: string },
    Outcome & { readonly entries: readonly RepositoryEntry[] }
  >;
  'server/statistics': Call<
    Record<string, never>,
    { readonly clientRuns: Counts; readonly cacheBytes: number; readonly watches: number }
  >;
}

export type Method = keyof Requests;
export type Params<M extends Method> = Requests[M]['params'];
export type Result<M extends Method> = Requests[M]['result'];

/** The notifications that the extension sends. */
export interface ClientNotifications {
  'workingCopy/didChange': Paths;
}

export interface ChangedParams extends AtRoot {
  readonly generation: number;
  readonly changed: readonly Item[];
  readonly removed: readonly string[];
  readonly counts: Counts;
}

/** The notifications that the server sends. */
export interface ServerNotifications {
  'workingCopy/changed': ChangedParams;
  'workingCopy/didOpen': WorkingCopyFacts;
  'workingCopy/didClose': AtRoot;
  'window/logMessage': { readonly type: number; readonly message: string };
}

/** The questions that the server asks, with what each takes for an answer. */
export interface ServerQuestions {
  'credentials/get': {
    readonly params: {
      readonly realm: string;
      readonly url: string | null;
      readonly user: string | null;
      readonly reason: 'first' | 'refused';
    };
    readonly result: {
      readonly user: string;
      readonly password: string;
      readonly keep: 'once' | 'process' | 'client';
    } | null;
  };
  'certificate/confirm': {
    readonly params: {
      readonly url: string;
      readonly hostname: string;
      readonly validity: string;
      readonly issuer: string;
      readonly fingerprint: string;
      readonly failures: readonly string[];
    };
    readonly result: 'reject' | 'once' | 'always';
  };
  'ssh/ask': {
    readonly params: { readonly prompt: string; readonly secret: boolean };
    readonly result: string | null;
  };
}

export type Question = keyof ServerQuestions;

/** The value of `$/progress` for a `workDoneToken`. */
export type WorkDone =
  | { readonly kind: 'begin'; readonly title: string; readonly cancellable: boolean }
  | { readonly kind: 'report'; readonly message: string; readonly items: number }
  | { readonly kind: 'end'; readonly message?: string };

export const requestCancelled = -32800;
