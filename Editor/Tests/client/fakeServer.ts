// A server that does what its first argument says. It stands in where the real one cannot be made
// to crash, to be of another version, or to ask.

import {
  type CancellationToken,
  createMessageConnection,
  ResponseError,
  StreamMessageReader,
  StreamMessageWriter,
} from 'vscode-jsonrpc/node';

const [behaviour = 'plain'] = process.argv.slice(2);
const messages = createMessageConnection(
  new StreamMessageReader(process.stdin),
  new StreamMessageWriter(process.stdout),
);
let isShutDown = false;

messages.onRequest('initialize', () => {
  if (behaviour === 'silentEnd') process.exit(3);
  return {
    serverInfo: { name: 'quen', version: behaviour === 'otherVersion' ? '7.0' : '0.1.0' },
    client: { path: '/usr/bin/svn', version: '1.14.2' },
    capabilities: { methods: [], requestTypes: [] },
  };
});
messages.onRequest('shutdown', () => {
  isShutDown = true;
  return null;
});
messages.onNotification('exit', () => process.exit(isShutDown ? 0 : 1));
messages.onRequest('workingCopy/open', async ({ path }: { path: string }) => {
  if (behaviour === 'crashes' || path === '/crash') {
    process.stderr.write('last words');
    process.exit(70);
  }
  if (path === '/ask') {
    const answer = await messages.sendRequest('credentials/get', {
      realm: '<http://host> Realm',
      url: 'http://host',
      user: null,
      reason: 'first',
    });
    return { answer };
  }
  return { workingCopy: path };
});
messages.onRequest(
  'workingCopy/update',
  async ({ workDoneToken }: { workDoneToken: string }, token) => {
    await messages.sendNotification('$/progress', {
      token: workDoneToken,
      value: { kind: 'begin', title: 'Updating', cancellable: true },
    });
    await new Promise((resolve) => (token as CancellationToken).onCancellationRequested(resolve));
    return new ResponseError(-32800, 'cancelled', { mayHaveLeftLock: true });
  },
);
messages.onNotification('workingCopy/didChange', ({ paths }: { paths: string[] }) => {
  void messages.sendNotification('workingCopy/changed', {
    workingCopy: '/w',
    generation: 2,
    changed: paths.map((path) => ({ path, status: 'modified', property: 'none' })),
    removed: [],
    counts: {},
  });
});
messages.listen();
