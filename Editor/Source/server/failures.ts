import type { ClientError, Failure, Outcome } from './protocol';

/** The client ran and failed: what it said, and of which kind that is. */
export class OperationFailed extends Error {
  constructor(
    readonly error: ClientError | null,
    readonly failure: Failure,
  ) {
    super(error?.description ?? failure);
    this.name = 'OperationFailed';
  }
}

/** The request was cancelled, by a person or by its caller. */
export class Cancelled extends Error {
  constructor(readonly mayHaveLeftLock: boolean) {
    super('cancelled');
    this.name = 'Cancelled';
  }
}

/** The server could not be started, or does not fit; the message says what to do. */
export class ServerUnavailable extends Error {
  constructor(
    message: string,
    readonly kind: 'notFound' | 'versionDiffers' | 'keepsEnding' | 'stopped',
  ) {
    super(message);
    this.name = 'ServerUnavailable';
  }
}

/** Answers `result` where all is well, throws what the client said where it is not. */
export function succeeded<R extends Partial<Outcome>>(result: R): R {
  if (result.error || result.failure) {
    throw new OperationFailed(result.error ?? null, result.failure ?? 'other');
  }
  return result;
}
