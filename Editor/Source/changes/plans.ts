// What the server says a step would do, before it is done.

import type { WorkingCopy } from '../model/workingCopy';
import { contains } from '../model/paths';
import { groupOf } from '../model/words';
import type { Plan, PlanKind } from '../server/protocol';
import { succeeded } from '../server/failures';
import type { Services } from '../services';

/**
 * The server's plan. A server that makes none is asked for none: then the status tells what lies at
 * and below the paths, and nothing is known of the repository's side.
 */
export async function planOf(
  services: Services,
  copy: WorkingCopy,
  kind: PlanKind,
  paths: readonly string[],
  url?: string,
): Promise<Plan> {
  const { server } = services;
  const { capabilities } = await server.start();
  if (!capabilities.methods.includes('change/plan')) return fromStatus(copy, kind, paths);
  const params = url === undefined ? { kind, paths } : { kind, paths, url };
  return succeeded(await server.request('change/plan', params));
}

function fromStatus(copy: WorkingCopy, kind: PlanKind, paths: readonly string[]): Plan {
  const items = [...copy.items.values()].filter(
    (item) =>
      paths.some((path) => contains(path, item.path)) &&
      ['changes', 'conflicts', 'missing'].includes(groupOf(item)),
  );
  const isLosing = kind === 'revert' || kind === 'remove';
  const lost = items.filter(({ status }) => status !== 'missing' && status !== 'deleted');
  return {
    items: items.map(({ path, status }) => ({ path, action: status })),
    alsoTaken: [],
    lost: isLosing ? lost.map(({ path }) => path) : [],
    needsParents: [],
    groups: [],
    decidedForMine: [],
    error: null,
    failure: null,
  };
}
