'use strict';
// What npm packs can be installed and used.

const assert = require('node:assert');
const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const test = require('node:test');
const sample = require('./sample.js');

const root = path.resolve(__dirname, '..');
const use = `
const place = { file: ${JSON.stringify(sample.file)} };
const library = new Library(place);
console.log(library.songs.length, library.search('violin').next().done);
library.close();
`;

test('the packed module is whole, and works by require and by import', (t) => {
  const folder = sample.folder(t);
  const run = (program, ...values) => execFileSync(program, values, { cwd: folder, encoding: 'utf8' });
  run('npm', 'pack', '--silent', '--ignore-scripts', root);
  const there = path.join(folder, 'node_modules/tavrel');
  fs.mkdirSync(there, { recursive: true });
  run('tar', '-xzf', fs.readdirSync(folder).find((name) => name.endsWith('.tgz')), '--strip-components=1', '-C', there);
  assert.deepStrictEqual(fs.readdirSync(there).sort(), ['LICENSE', 'README.md', 'lib', 'package.json', 'types']);
  assert.deepStrictEqual(fs.readdirSync(path.join(there, 'types')), ['index.d.ts']);

  const modules = require.resolve.paths('koffi').find((place) => fs.existsSync(path.join(place, 'koffi')));
  fs.symlinkSync(path.join(modules, 'koffi'), path.join(folder, 'node_modules/koffi'));
  fs.writeFileSync(path.join(folder, 'user.cjs'), `const { Library } = require('tavrel');${use}`);
  fs.writeFileSync(path.join(folder, 'user.mjs'), `import { Library } from 'tavrel';${use}`);
  for (const user of ['user.cjs', 'user.mjs']) {
    assert.strictEqual(run(process.execPath, user), `${sample.songs} false\n`);
  }
});
