// Runs tests inside the extension host, one after the other, and says on the console how each went.

export type HostTest = readonly [name: string, run: () => Promise<void>];

const bound = 30_000;

export async function runAll(tests: readonly HostTest[]): Promise<void> {
  const failed: string[] = [];
  const only = process.env.QUEN_EDITOR_ONLY; // A pattern of names, for work on some of them.
  const chosen = tests.filter(([name]) => only === undefined || new RegExp(only).test(name));
  for (const [name, run] of chosen) {
    const problem = await problemOf(run);
    console.log(problem === undefined ? `ok - ${name}` : `not ok - ${name}\n${problem}`);
    if (problem !== undefined) failed.push(name);
  }
  console.log(`# pass ${chosen.length - failed.length}\n# fail ${failed.length}`);
  if (failed.length > 0) throw new Error(`${failed.length} tests failed`);
}

async function problemOf(run: () => Promise<void>): Promise<string | undefined> {
  let timer: NodeJS.Timeout | undefined;
  const late = new Promise<never>((_resolve, reject) => {
    timer = setTimeout(() => {
      reject(new Error(`not done after ${bound} ms`));
    }, bound);
  });
  try {
    await Promise.race([run(), late]);
    return undefined;
  } catch (error) {
    return error instanceof Error ? (error.stack ?? error.message) : String(error);
  } finally {
    clearTimeout(timer);
  }
}

const untilBound = 20_000;

/** Waits until `check` answers something; what it waited for is told where that never comes. */
export async function until<T>(
  check: () => T | undefined | false | Promise<T | undefined | false>,
  every = 20,
): Promise<T> {
  const end = Date.now() + untilBound;
  for (;;) {
    const found = await check();
    if (found !== undefined && found !== false) return found;
    if (Date.now() > end) throw new Error(`never came: ${check.toString()}`);
    await new Promise((resolve) => setTimeout(resolve, every));
  }
}
