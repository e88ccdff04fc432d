// The server as the rest of the extension sees it: always one, started anew when it has crashed.

import { Connection, describeEnding, type Asker, type Listener } from './connection';
import type { RequestOptions, ServerCommand, ServerOptions } from './connection';
import { ServerUnavailable } from './failures';
import type { ClientNotifications, InitializeResult, Method, Params, Result } from './protocol';

export type ServerState =
  | { readonly kind: 'idle' }
  | { readonly kind: 'running'; readonly facts: InitializeResult }
  | { readonly kind: 'restarting'; readonly inMilliseconds: number; readonly reason: string }
  | { readonly kind: 'unavailable'; readonly reason: ServerUnavailable };

export interface ServerSetup {
  /** Where the server is; null where there is none. Asked before every start. */
  readonly locate: () => Promise<ServerCommand | null>;
  readonly options: () => ServerOptions;
  readonly ask: Asker;
  readonly listen: Listener;
  readonly onState: (state: ServerState) => void;
  /** Versions that this extension can talk to, as the server's `major.minor`. */
  readonly versions: readonly string[];
  readonly firstDelay?: number;
  readonly crashesInARow?: number;
}

const longestDelay = 30_000;
const calmAfter = 60_000;

export class Server {
  private connection: Promise<Connection> | null = null;
  private stopped = false;
  private crashes = 0;
  private startedAt = 0;
  private pendingStart: NodeJS.Timeout | undefined;
  private isWaiting = false;

  constructor(private readonly setup: ServerSetup) {}

  /** Starts the server where it does not run; rejects with `ServerUnavailable`. */
  async start(): Promise<InitializeResult> {
    return (await this.connected()).facts;
  }

  async request<M extends Method>(
    method: M,
    params: Params<M>,
    options?: RequestOptions,
  ): Promise<Result<M>> {
    return (await this.connected()).request(method, params, options);
  }

  async notify<N extends keyof ClientNotifications>(
    notification: N,
    params: ClientNotifications[N],
  ): Promise<void> {
    await (await this.connected()).notify(notification, params);
  }

  /** Ends the server; it stays ended. */
  async stop(): Promise<void> {
    this.stopped = true;
    clearTimeout(this.pendingStart);
    const running = this.connection;
    this.connection = null;
    if (this.isWaiting) return;
    await running?.then(
      (connection) => connection.shutdown(),
      () => undefined, // It never ran.
    );
  }

  /** Ends the server and starts it again, forgetting its crashes: a person asked for it. */
  async restart(): Promise<InitializeResult> {
    await this.stop();
    this.stopped = false;
    this.isWaiting = false;
    this.crashes = 0;
    return this.start();
  }

  private connected(): Promise<Connection> {
    if (this.stopped)
      return Promise.reject(new ServerUnavailable('The server was stopped.', 'stopped'));
    this.connection ??= this.open();
    return this.connection;
  }

  private async open(): Promise<Connection> {
    try {
      const connection = await this.launch();
      this.setup.onState({ kind: 'running', facts: connection.facts });
      void connection.ended.then((ending) => {
        this.onEnd(describeEnding(ending), Date.now());
      });
      this.startedAt = Date.now();
      return connection;
    } catch (error) {
      const reason = asUnavailable(error);
      this.setup.onState({ kind: 'unavailable', reason });
      throw reason;
    }
  }

  private async launch(): Promise<Connection> {
    const command = await this.setup.locate();
    if (!command) throw new ServerUnavailable('The program quen was not found.', 'notFound');
    const { options, ask, listen, versions } = this.setup;
    const connection = await Connection.start(command, options(), ask, listen);
    const { version } = connection.facts.serverInfo;
    if (versions.some((known) => version === known || version.startsWith(`${known}.`))) {
      return connection;
    }
    await connection.shutdown();
    throw new ServerUnavailable(
      `${command.program} is version ${version}; this extension needs ${versions.join(' or ')}.`,
      'versionDiffers',
    );
  }

  private onEnd(reason: string, now: number): void {
    if (this.stopped) return;
    if (now - this.startedAt > calmAfter) this.crashes = 0;
    this.crashes += 1;
    if (this.crashes > (this.setup.crashesInARow ?? 5)) {
      this.giveUp(reason);
      return;
    }
    const delay = Math.min(longestDelay, (this.setup.firstDelay ?? 250) * 2 ** (this.crashes - 1));
    this.setup.onState({ kind: 'restarting', inMilliseconds: delay, reason });
    this.isWaiting = true;
    this.connection = new Promise((resolve, reject) => {
      this.pendingStart = setTimeout(() => {
        this.isWaiting = false;
        this.open().then(resolve, reject);
      }, delay);
    });
    this.connection.catch(() => undefined); // `onState` has told it; a later request starts anew.
  }

  private giveUp(reason: string): void {
    const unavailable = new ServerUnavailable(reason, 'keepsEnding');
    this.connection = Promise.reject(unavailable);
    this.connection.catch(() => undefined); // Every request from now on tells it.
    this.setup.onState({ kind: 'unavailable', reason: unavailable });
  }
}

function asUnavailable(error: unknown): ServerUnavailable {
  if (error instanceof ServerUnavailable) return error;
  const text = error instanceof Error ? error.message : String(error);
  return new ServerUnavailable(text, 'keepsEnding');
}
