// One running server: its process and the messages to and from it. Knows no editor.

import { spawn, type ChildProcessWithoutNullStreams } from 'node:child_process';
import { Writable } from 'node:stream';
import {
  createMessageConnection,
  ResponseError,
  StreamMessageReader,
  StreamMessageWriter,
  type CancellationToken,
  type MessageConnection,
} from 'vscode-jsonrpc/node';
import { Cancelled } from './failures';
import {
  requestCancelled,
  type ClientNotifications,
  type InitializeResult,
  type Method,
  type Params,
  type Question,
  type Result,
  type ServerNotifications,
  type ServerQuestions,
  type WorkDone,
} from './protocol';

export interface ServerCommand {
  readonly program: string;
  readonly arguments: readonly string[];
  readonly environment?: NodeJS.ProcessEnv;
}

export interface ServerOptions {
  readonly clientInfo: { readonly name: string; readonly version: string };
  readonly options: Readonly<Record<string, unknown>>;
}

export interface RequestOptions {
  readonly token?: CancellationToken | undefined;
  readonly progress?: ((value: WorkDone) => void) | undefined;
  /** Hears of the records while the client still writes; those of the answer are then none. */
  readonly part?: ((records: readonly never[]) => void) | undefined;
}

/** How the process ended: by itself (`code`), or by a signal. */
export interface Ending {
  readonly code: number | null;
  readonly signal: NodeJS.Signals | null;
  readonly lastWords: string;
}

export type Asker = <Q extends Question>(
  question: Q,
  params: ServerQuestions[Q]['params'],
  /** Cancelled where the answer is no longer wanted. */
  token: CancellationToken,
) => Promise<ServerQuestions[Q]['result']>;

export type Listener = <N extends keyof ServerNotifications>(
  notification: N,
  params: ServerNotifications[N],
) => void;

const keptLastWords = 4000;
const shutdownPatience = 3000;
const questions: readonly Question[] = ['credentials/get', 'certificate/confirm', 'ssh/ask'];
const notifications: readonly (keyof ServerNotifications)[] = [
  'workingCopy/changed',
  'workingCopy/didOpen',
  'workingCopy/didClose',
  'window/logMessage',
];

/** A server that has answered `initialize`. */
export class Connection {
  private progressCount = 0;
  private readonly progressListeners = new Map<string, (value: never) => void>();

  private constructor(
    private readonly process: ChildProcessWithoutNullStreams,
    private readonly messages: MessageConnection,
    readonly facts: InitializeResult,
    /** Settles when the process has ended, for whatever reason. */
    readonly ended: Promise<Ending>,
  ) {
    messages.onNotification('$/progress', (params: { token: string; value: never }) => {
      this.progressListeners.get(params.token)?.(params.value);
    });
  }

  /** Starts a server; rejects where it cannot be started or ends before it has answered. */
  static async start(
    command: ServerCommand,
    options: ServerOptions,
    ask: Asker,
    listen: Listener,
  ): Promise<Connection> {
    const child = spawn(command.program, [...command.arguments], {
      env: command.environment ?? process.env,
      stdio: 'pipe',
    });
    const ended = endOf(child);
    const messages = connect(child, ask, listen);
    const facts = await Promise.race([
      messages.sendRequest<InitializeResult>('initialize', {
        processId: process.pid,
        ...options,
      }),
      ended.then((ending) => {
        throw new Error(describeEnding(ending));
      }),
    ]);
    await messages.sendNotification('initialized', {});
    return new Connection(child, messages, facts, ended);
  }

  /** Rejects with `Cancelled`, or with the protocol's error; a client's failure is a result. */
  async request<M extends Method>(
    method: M,
    params: Params<M>,
    options: RequestOptions = {},
  ): Promise<Result<M>> {
    const workDoneToken = this.register(options.progress);
    const partialResultToken = this.register(options.part);
    const message = {
      ...params,
      ...(workDoneToken && { workDoneToken }),
      ...(partialResultToken && { partialResultToken }),
    };
    try {
      const sent = options.token
        ? this.messages.sendRequest<Result<M>>(method, message, options.token)
        : this.messages.sendRequest<Result<M>>(method, message);
      return await this.orEnded(sent);
    } catch (error) {
      throw translated(error);
    } finally {
      if (workDoneToken) this.progressListeners.delete(workDoneToken);
      if (partialResultToken) this.progressListeners.delete(partialResultToken);
    }
  }

  async notify<N extends keyof ClientNotifications>(
    notification: N,
    params: ClientNotifications[N],
  ): Promise<void> {
    await this.messages.sendNotification(notification, params);
  }

  /** Asks the server to end, and ends it where it does not within three seconds. */
  async shutdown(): Promise<Ending> {
    const timer = setTimeout(() => this.process.kill('SIGKILL'), shutdownPatience);
    try {
      await Promise.race([this.messages.sendRequest('shutdown'), this.ended]);
      await this.messages.sendNotification('exit');
    } catch {
      this.process.kill('SIGTERM'); // It no longer listens; what it said is in its ending.
    }
    const ending = await this.ended;
    clearTimeout(timer);
    return ending;
  }

  private register(listener: ((value: never) => void) | undefined): string | undefined {
    if (!listener) return undefined;
    const token = `work-${(this.progressCount += 1)}`;
    this.progressListeners.set(token, listener);
    return token;
  }

  private orEnded<R>(answer: Promise<R>): Promise<R> {
    return Promise.race([
      answer,
      this.ended.then((ending): R => {
        throw new Error(describeEnding(ending));
      }),
    ]);
  }
}

export function describeEnding(ending: Ending): string {
  const how = ending.signal ? `signal ${ending.signal}` : `status ${ending.code ?? '?'}`;
  return `quen serve ended with ${how}${ending.lastWords ? `: ${ending.lastWords.trim()}` : ''}`;
}

function connect(
  child: ChildProcessWithoutNullStreams,
  ask: Asker,
  listen: Listener,
): MessageConnection {
  const messages = createMessageConnection(
    new StreamMessageReader(child.stdout),
    new StreamMessageWriter(forgiving(child.stdin)),
  );
  messages.onError(() => undefined);
  for (const question of questions) {
    messages.onRequest(question, (params: ServerQuestions[typeof question]['params'], token: CancellationToken) =>
      ask(question, params, token),
    );
  }
  for (const notification of notifications) {
    messages.onNotification(notification, (params: ServerNotifications[typeof notification]) => {
      listen(notification, params);
    });
  }
  messages.listen();
  return messages;
}

/** Passes everything on; a pipe that has closed is told once, by the end of the process. */
function forgiving(pipe: Writable): Writable {
  pipe.on('error', () => undefined);
  return new Writable({
    write: (chunk: Buffer, _encoding, done) => {
      if (pipe.writable) {
        pipe.write(chunk, () => {
          done();
        });
      } else {
        done();
      }
    },
  });
}

function endOf(child: ChildProcessWithoutNullStreams): Promise<Ending> {
  let lastWords = '';
  child.stderr.setEncoding('utf8');
  child.stderr.on('data', (text: string) => {
    lastWords = (lastWords + text).slice(-keptLastWords);
  });
  return new Promise((resolve) => {
    child.once('error', (error) => {
      resolve({ code: null, signal: null, lastWords: error.message });
    });
    child.once('close', (code, signal) => {
      resolve({ code, signal, lastWords });
    });
  });
}

function translated(error: unknown): unknown {
  if (!(error instanceof ResponseError) || error.code !== requestCancelled) return error;
  const data = error.data as { mayHaveLeftLock?: boolean } | undefined;
  return new Cancelled(data?.mayHaveLeftLock === true);
}
