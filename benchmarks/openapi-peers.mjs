// What node's libraries make of a document: node openapi-peers.mjs bundle|dereference|parse FILE prints the
// milliseconds it took; yaml FILE OUT writes the document in YAML.
import { readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';

const require = createRequire(process.env.ZO_NPM_FOLDER + '/package.json');
const [task, file, out] = process.argv.slice(2);
if (task === 'yaml') {
  const document = JSON.parse(readFileSync(file, 'utf8'));
  writeFileSync(out, require('yaml').stringify(document, { aliasDuplicateObjects: false }));
} else {
  const parser = task === 'parse' ? null : require('@apidevtools/swagger-parser');
  const start = performance.now();
  if (task === 'parse') JSON.parse(readFileSync(file, 'utf8'));
  else await parser[task](file);
  console.log((performance.now() - start).toFixed(1));
}
