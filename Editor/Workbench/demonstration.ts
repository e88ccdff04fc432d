// A small project with a past and with changes of every kind.

import { rmSync } from 'node:fs';
import { Sandbox, type WorkingCopyOnDisk } from './repository';

const readme = `# Weather station

Reads the sensors on the roof and keeps what they say.

    make
    ./station --port 8080
`;

const station = `#include "sensor.h"

#include <stdio.h>

/* Reads every sensor once and prints what it says. */
int main(void)
{
    struct sensor sensors[8];
    int count = find_sensors(sensors, 8);

    for (int i = 0; i < count; i++) {
        struct reading r = read_sensor(&sensors[i]);
        printf("%s: %.1f\\n", sensors[i].name, r.value);
    }
    return 0;
}
`;

const sensor = `#ifndef SENSOR_H
#define SENSOR_H

struct sensor {
    const char *name;
    int address;
};

struct reading {
    double value;
};

int find_sensors(struct sensor *sensors, int room);
struct reading read_sensor(const struct sensor *sensor);

#endif
`;

const day = 86_400_000;

export interface Demonstration {
  readonly url: string;
  readonly copy: WorkingCopyOnDisk;
  /** A second working copy: the colleague's. */
  readonly other: WorkingCopyOnDisk;
}

export function makeDemonstration(sandbox: Sandbox): Demonstration {
  const url = sandbox.repository();
  const copy = sandbox.checkOut(`${url}/trunk`, 'weather-station');
  copy.commit('Start the weather station', {
    'README.md': readme,
    'src/station.c': station,
    'src/sensor.h': sensor,
    Makefile: 'station: src/station.c src/sensor.h\n\tcc -o station src/station.c\n',
  });
  copy.commit(
    'Print the unit beside each value\n\nPeople took Fahrenheit for Celsius.',
    { 'src/station.c': station.replace('%.1f\\n', '%.1f C\\n') },
    'ben',
  );
  copy.commit('Say how many sensors there are', {
    'src/station.c': station
      .replace('%.1f\\n', '%.1f C\\n')
      .replace('    for', '    printf("%d sensors\\n", count);\n    for'),
  });
  sandbox.svn('copy', '-m', 'Branch for the wind sensor', `${url}/trunk`, `${url}/branches/wind`);
  sandbox.svn('copy', '-m', 'Release 1.0', `${url}/trunk`, `${url}/tags/1.0`);
  copy.commit(
    'Notes for the roof',
    { 'docs/roof.md': 'The ladder is in the cellar.\n', 'docs/old.md': 'x\n' },
    'eve',
  );
  setDates(sandbox, url, 7);
  const other = sandbox.checkOut(`${url}/trunk`, 'colleague');
  changeEverything(copy);
  return { url, copy, other };
}

function changeEverything(copy: WorkingCopyOnDisk): void {
  copy.svn('update');
  copy.write({
    'src/station.c': station
      .replace('%.1f\\n', '%6.2f C\\n')
      .replace('    for', '    printf("%d sensors\\n", count);\n    for'),
    'src/wind.c': '#include "sensor.h"\n',
    'notes.txt': 'Ask about the calibration.\n',
    'docs/roof.md': 'The ladder is in the cellar.\nThe key hangs beside it.\n',
  });
  copy.svn('add', 'src/wind.c');
  copy.svn('propset', 'svn:eol-style', 'native', 'README.md');
  copy.svn('changelist', 'documentation', 'docs/roof.md');
  copy.svn('delete', 'docs/old.md');
  rmSync(copy.path('Makefile'));
}

function setDates(sandbox: Sandbox, url: string, newest: number): void {
  for (let revision = 1; revision <= newest; revision += 1) {
    const date = new Date(Date.now() - (newest - revision + 1) * 3 * day).toISOString();
    const value = date.replace('Z', '000Z');
    sandbox.svn('propset', '--revprop', '-r', String(revision), 'svn:date', value, url);
  }
}
