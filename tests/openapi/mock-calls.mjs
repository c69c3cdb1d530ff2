// Calls every operation of documents, with requests made from their examples and types, at a server that
// checks requests against the document: node mock-calls.mjs ZOAPI DOC...
// Ends with 1 when the server finds anything wrong with what was sent.
import { spawn } from 'node:child_process';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:net';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { Document } from './kinds.mjs';

const formats = { 'date-time': '2024-02-29T12:30:00Z', date: '2024-02-29', email: 'ann@example.com',
  uuid: '123e4567-e89b-12d3-a456-426614174000', uri: 'https://example.com/a', url: 'https://example.com/a',
  ipv4: '127.0.0.1', ipv6: '::1', hostname: 'example.com', byte: 'aGVsbG8=', time: '12:30:00Z',
  'uri-reference': '/a', duration: 'P1D', 'json-pointer': '/a', regex: '^a$', 'idn-email': 'ann@example.com' };

function exampleOf(document, given) {
  if (!given || typeof given !== 'object') return undefined;
  if (given.example !== undefined) return given.example;
  if (Array.isArray(given.examples)) return given.examples[0];
  const named = Object.values(given.examples ?? {})[0];
  return document.target(named)?.value;
}

/// AValue as a value of the type, as some documents write numbers and objects as text; undefined where what
/// a document offers is none of its own type.
function fitting(schema, type, value) {
  if (value === undefined || value === null) return undefined;
  if (typeof value === 'string' && type && type !== 'string') {
    try { value = JSON.parse(value); } catch { return undefined; }
  }
  if (schema.format === 'uuid' && !/^[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}$/i.test(value)) return undefined;
  const actual = Array.isArray(value) ? 'array' : typeof value;
  const wanted = type === 'integer' ? 'number' : type;
  return !wanted || actual === wanted ? value : undefined;
}

/// A value of a schema; undefined where there is none to think of.
function sample(document, given, depth = 0) {
  const schema = document.target(given);
  if (!schema || typeof schema !== 'object' || depth > 6) return schema === true || !schema ? 'anything' : undefined;
  // Bytes inside a JSON text come from files, which are not made here.
  if (depth > 0 && document.isBytes(schema)) return undefined;
  const type = [schema.type].flat().filter(t => t && t !== 'null')[0] ?? document.impliedType(schema);
  for (const offered of [exampleOf(document, schema), schema.default, schema.const, ...(schema.enum ?? [])]) {
    const own = fitting(schema, type, offered);
    if (own !== undefined) return own;
  }
  if (schema.allOf) return mergeParts(document, schema, depth);
  const choice = schema.oneOf ?? schema.anyOf;
  if (choice && !Object.keys(schema.properties ?? {}).length) return sampleChoice(document, schema, choice, depth);
  switch (type) {
    case 'string': {
      const text = formats[schema.format] ?? 'text';
      return text.padEnd(schema.minLength ?? 0, 'x').slice(0, schema.maxLength ?? Infinity);
    }
    case 'integer': case 'number': {
      const low = schema.minimum ?? (typeof schema.exclusiveMinimum === 'number' ? schema.exclusiveMinimum + 1 : undefined);
      const value = low ?? Math.min(7, schema.maximum ?? 7);
      const step = schema.multipleOf ?? 1;
      return (schema.exclusiveMinimum === true ? value + step : Math.ceil(value / step) * step);
    }
    case 'boolean': return true;
    case 'array': {
      const item = sample(document, schema.items ?? {}, depth + 1);
      return item === undefined ? [] : Array(schema.uniqueItems ? 1 : Math.max(1, schema.minItems ?? 1)).fill(item);
    }
    case 'object': return sampleObject(document, schema, depth);
    default: return 'anything';
  }
}

function mergeParts(document, schema, depth) {
  const parts = [...schema.allOf, { ...schema, allOf: undefined }]
    .filter(part => document.says(document.target(part))).map(part => sample(document, part, depth + 1));
  const objects = parts.filter(part => part && typeof part === 'object' && !Array.isArray(part));
  return objects.length ? Object.assign({}, ...objects) : parts.find(part => part !== undefined);
}

function sampleChoice(document, schema, choice, depth) {
  const picked = choice.find(a => document.target(a)?.type !== 'null');
  const value = sample(document, picked, depth + 1);
  const key = schema.discriminator?.propertyName;
  if (!key || !value || typeof value !== 'object') return value;
  const mapped = Object.entries(schema.discriminator.mapping ?? {})
    .find(([, ref]) => ref === picked.$ref || picked.$ref?.endsWith('/' + ref));
  return { ...value, [key]: mapped?.[0] ?? picked.$ref?.split('/').pop() ?? value[key] };
}

function sampleObject(document, schema, depth) {
  const value = {};
  for (const [name, field] of Object.entries(schema.properties ?? {})) {
    const target = document.target(field);
    if (target?.readOnly || field?.readOnly) continue;
    const own = sample(document, field, depth + 1);
    if (own !== undefined && own !== null) value[name] = own;
  }
  if (!Object.keys(value).length && schema.additionalProperties && schema.additionalProperties !== true) {
    const own = sample(document, schema.additionalProperties, depth + 1);
    if (own !== undefined) value.key = own;
  }
  return value;
}

/// The arguments that fill in a request, beside its JSON.
function requestOf(document, operation, upload) {
  const value = {};
  const args = [];
  for (const { name, kind, schema, given } of operation.properties) {
    const target = document.target(schema);
    if (target?.readOnly) continue;
    if (kind === 'upload') args.push('--upload', `${name}=${upload}`);
    else if (kind === 'list' && document.isBytes(target?.items)) args.push('--upload', `${name}/-=${upload}`, '--upload', `${name}/-=${upload}`);
    else {
      const example = exampleOf(document, given);
      const type = { object: 'object', map: 'object', list: 'array', string: 'string', integer: 'integer',
        int64: 'integer', float: 'number', boolean: 'boolean' }[kind];
      const own = fitting(target ?? {}, type, example) ?? (schema === undefined ? 'text' : sample(document, schema));
      if (own !== undefined && own !== null)
        value[name] = kind === 'string' && typeof own !== 'string' ? JSON.stringify(own) : own;
    }
  }
  return { value, args };
}

function credentials(document) {
  const schemes = Object.entries(document.root.components?.securitySchemes ?? document.root.securityDefinitions ?? {});
  const keys = schemes.map(([name, given]) => [name, document.target(given)])
    .filter(([, s]) => s.type === 'apiKey' || s.type === 'basic' || (s.type === 'http' && /^basic$/i.test(s.scheme)))
    .map(([name, s]) => `${name}=${s.type === 'apiKey' ? 'key' : 'user:secret'}`);
  return [...(keys.length ? ['--api-key', keys.join('; ')] : []), '--bearer', 'token'];
}

function freePort() {
  return new Promise(resolve => {
    const server = createServer().listen(0, '127.0.0.1', () => {
      const { port } = server.address();
      server.close(() => resolve(port));
    });
  });
}

async function startMock(file) {
  const port = await freePort();
  const program = join(process.env.ZO_NPM_FOLDER, 'node_modules/@stoplight/prism-cli/dist/index.js');
  const mock = spawn(process.execPath, [program, 'mock', '-h', '127.0.0.1', '-p', String(port), file]);
  let log = '';
  await new Promise((resolve, reject) => {
    const hear = data => { log += data; if (/is listening/.test(log)) resolve(); };
    mock.stdout.on('data', hear);
    mock.stderr.on('data', hear);
    mock.on('exit', () => reject(new Error('the mock server ended: ' + log)));
  });
  return { url: `http://127.0.0.1:${port}`, stop: () => new Promise(done => { mock.removeAllListeners('exit'); mock.on('exit', done); mock.kill('SIGKILL'); }) };
}

function run(program, args, input) {
  return new Promise(resolve => {
    const child = spawn(program, args);
    let errors = '';
    child.stderr.on('data', data => { errors += data; });
    child.on('close', code => resolve({ code, errors }));
    child.stdin.end(input);
  });
}

/// What the server finds wrong with a request; empty for nothing. It takes bodies for ambiguous that a
/// discriminator tells apart, which it does not know, and bodies for forbidden where a Swagger document names
/// no media type.
function complaint({ code, errors }) {
  const violations = JSON.parse(/^< sl-violations: (.*)$/im.exec(errors)?.[1] ?? '[]')
    .filter(v => v.location?.[0] === 'request' && v.code !== 'oneOf' &&
      !/^No supported content types/.test(v.message));
  if (violations.length) return JSON.stringify(violations);
  if (code === 2 || !/^< \d+/m.test(errors)) return errors.trim();
  const problem = /^\{"type":"https:\/\/stoplight\.io\/prism\/errors#(\w+)".*$/m.exec(errors);
  if (!problem || problem[1] === 'NO_RESPONSE_RESPONSE_DEFINED' || problem[1] === 'NOT_ACCEPTABLE') return '';
  const found = JSON.parse(problem[0]).validation ?? [];
  return found.length && found.every(v => v.code === 'oneOf') ? '' : problem[0];
}

const [zoapi, ...files] = process.argv.slice(2);
const folder = mkdtempSync(join(tmpdir(), 'zo-mock-'));
const upload = join(folder, 'upload.png');
writeFileSync(upload, 'content');
let count = 0;
let wrong = 0;
for (const file of files) {
  const document = new Document(file);
  const mock = await startMock(file);
  try {
    for (const operation of document.operations()) {
      const { value, args } = requestOf(document, operation, upload);
      const result = await run(zoapi, ['call', file, operation.name, '--server', mock.url, '--request', '-',
        '--output', '/dev/null', '--verbose', ...credentials(document), ...args], JSON.stringify(value));
      ++count;
      const what = complaint(result);
      if (!what) continue;
      ++wrong;
      console.log(`${file} ${operation.name}\n  ${JSON.stringify(value)}\n  ${what.slice(0, 1500)}`);
    }
  } finally {
    await mock.stop();
  }
}
rmSync(folder, { recursive: true });
console.log(`${count} operations of ${files.length} documents called, ${wrong} with something wrong`);
process.exit(wrong || count === 0 ? 1 : 0);
