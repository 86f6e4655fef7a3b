// Prints what the validator of glTF says of files, one JSON object: its issues, and how many
// triangles it counts.
//
//   node meshes.cjs FILE...
'use strict';
const fs = require('fs');
const validator = require('gltf-validator');

(async () => {
  const found = {};
  for (const file of process.argv.slice(2)) {
    const { issues, info } = await validator.validateBytes(new Uint8Array(fs.readFileSync(file)));
    found[file] = { issues: issues.messages, triangles: info.totalTriangleCount };
  }
  process.stdout.write(JSON.stringify(found) + '\n');
})().catch((error) => {
  process.stderr.write(`${error.stack || error}\n`);
  process.exit(1);
});
