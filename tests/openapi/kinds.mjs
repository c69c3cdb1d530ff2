// Says of each document what its operations take and answer, so that the importer can be compared with
// somebody else's reading of it: node kinds.mjs DOC...
// One line of JSON a document: title, version, types, and for each operation a line
// "NAME METHOD PATH | property:kind ... | kind of the response".
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { fileURLToPath } from 'node:url';

const require = createRequire(process.env.ZO_NPM_FOLDER + '/package.json');
const yaml = require('yaml');
const methods = ['get', 'put', 'post', 'delete', 'options', 'head', 'patch', 'trace'];

export class Document {
  constructor(file) {
    const text = readFileSync(file, 'utf8');
    this.root = text.trimStart().startsWith('{')
      ? JSON.parse(text) : yaml.parse(text, { maxAliasCount: -1, merge: true, intAsBigInt: false });
    this.isSwagger = Boolean(this.root.swagger);
    this.is31 = String(this.root.openapi).startsWith('3.1');
  }

  target(value) {
    let hops = 0;
    while (value && typeof value === 'object' && typeof value.$ref === 'string') {
      if (!value.$ref.startsWith('#') || ++hops > 50) return undefined;
      const parts = decodeURIComponent(value.$ref.slice(1)).split('/').slice(1);
      value = parts.reduce(
        (at, part) => at?.[part.replaceAll('~1', '/').replaceAll('~0', '~')], this.root);
    }
    return value;
  }

  isBytes(schema) {
    schema = this.target(schema) ?? {};
    return schema.format === 'binary' || schema.type === 'file' ||
      (schema.contentMediaType && !schema.contentEncoding && !/json|^text\//.test(schema.contentMediaType));
  }

  says(schema) {
    return schema && typeof schema === 'object' && schema.type !== 'null' &&
      ['$ref', 'type', 'properties', 'allOf', 'oneOf', 'anyOf', 'enum', 'const', 'items',
        'additionalProperties', 'format'].some(key => key in schema);
  }

  isObject(schema, seen = new Set()) {
    schema = this.target(schema);
    if (!schema || typeof schema !== 'object' || seen.has(schema)) return false;
    seen.add(schema);
    const types = [schema.type].flat().filter(t => t && t !== 'null');
    return Object.keys(schema.properties ?? {}).length > 0 || (types.length === 1 && types[0] === 'object') ||
      (schema.allOf ?? []).some(part => this.isObject(part, seen));
  }

  kind(given) {
    const schema = this.target(given);
    if (!schema || typeof schema !== 'object') return 'any';
    if (schema.allOf?.length) {
      const parts = schema.allOf.filter(part => this.says(this.target(part)));
      const own = Object.keys(schema.properties ?? {}).length;
      if (parts.length === 0) return this.plainKind(schema);
      if ((parts.length === 1 && !own) || !this.isObject(schema)) return this.kind(parts[0]);
      return 'object';
    }
    for (const alternatives of [schema.oneOf, schema.anyOf]) {
      if (!Array.isArray(alternatives) || Object.keys(schema.properties ?? {}).length) continue;
      if (alternatives.some(a => this.says(a))) return this.choiceKind(schema, alternatives);
    }
    return this.plainKind(schema);
  }

  choiceKind(schema, alternatives) {
    const isNull = a => a.type === 'null' || (a.enum?.length === 1 && a.enum[0] === null);
    const targets = [...new Set(alternatives.map(a => this.target(a)).filter(a => a && !isNull(a)))];
    const name = schema.discriminator?.propertyName ?? schema.discriminator;
    if (targets.length === 0) return 'any';
    if (typeof name === 'string' && targets.every(a => this.isObject(a))) return 'object';
    return targets.length === 1 ? this.kind(targets[0]) : 'union';
  }

  plainKind(schema) {
    const types = [schema.type].flat().filter(t => t && t !== 'null');
    if (types.length > 1) return 'union';
    switch (types[0] ?? this.impliedType(schema)) {
      case 'string':
        if (this.isBytes(schema)) return 'upload';
        return { 'date-time': 'date-time', date: 'date' }[schema.format] ?? 'string';
      case 'integer': return schema.format === 'int32' ? 'integer' : 'int64';
      case 'number': return 'float';
      case 'boolean': return 'boolean';
      case 'array': return 'list';
      case 'file': return 'upload';
      case 'object': {
        const hasFields = Object.keys(schema.properties ?? {}).length > 0;
        return hasFields || schema.additionalProperties === false ? 'object' : 'map';
      }
      default: return 'any';
    }
  }

  impliedType(schema) {
    if (schema.properties || schema.additionalProperties !== undefined || schema.patternProperties) return 'object';
    if (schema.items || schema.prefixItems) return 'array';
    const value = schema.enum ? schema.enum[0] : schema.const;
    if (value !== undefined && value !== null)
      return { string: 'string', boolean: 'boolean', object: 'object' }[typeof value] ??
        (Number.isInteger(value) ? 'integer' : 'number');
    if ('pattern' in schema || 'minLength' in schema || 'maxLength' in schema) return 'string';
    if (['date-time', 'date', 'binary', 'byte', 'uuid', 'email', 'uri', 'password'].includes(schema.format))
      return 'string';
    if (['int32', 'int64'].includes(schema.format)) return 'integer';
    return 'minimum' in schema || 'maximum' in schema || 'multipleOf' in schema ||
      ['float', 'double'].includes(schema.format) ? 'number' : undefined;
  }

  /// The properties of a form, those of its bases first.
  fields(given, into = new Map(), seen = new Set()) {
    const schema = this.target(given);
    if (!schema || typeof schema !== 'object' || seen.has(schema)) return into;
    seen.add(schema);
    for (const part of schema.allOf ?? []) this.fields(part, into, seen);
    for (const [name, field] of Object.entries(schema.properties ?? {}))
      if (!into.has(name) || this.says(field)) into.set(name, field);
    for (const part of [...(schema.oneOf ?? []), ...(schema.anyOf ?? [])]) {
      const more = this.fields(part, new Map(), seen);
      for (const [name, field] of more) if (!into.has(name)) into.set(name, field);
    }
    return into;
  }

  isJson(media) {
    const type = media.split(';')[0].trim().toLowerCase();
    return ['application/json', 'text/json', '*/*', 'application/*'].includes(type) || type.endsWith('+json');
  }

  bodyProperties(oper, path) {
    const consumes = oper.consumes ?? this.root.consumes ?? [];
    if (this.isSwagger) {
      const all = [...(path.parameters ?? []), ...(oper.parameters ?? [])].map(p => this.target(p));
      return all.filter(p => p && (p.in === 'body' || p.in === 'formData')).map(p => p.in === 'formData'
        ? [p.name, this.kind(p), 'body', p]
        : ['body', this.wholeKind(consumes.find(m => this.isJson(m)) ?? consumes[0] ?? 'application/json', p.schema), 'body', p.schema, p]);
    }
    const content = Object.entries(this.target(oper.requestBody)?.content ?? {});
    const plain = media => media.split(';')[0].trim().toLowerCase();
    const chosen = content.find(([m, v]) => this.isJson(m) && !(v.schema && this.isBytes(v.schema))) ??
      content.find(([m]) => plain(m) === 'multipart/form-data') ??
      content.find(([m]) => plain(m) === 'application/x-www-form-urlencoded') ?? content[0];
    if (!chosen) return [];
    const [media, { schema }] = chosen;
    const given = chosen[1];
    const isForm = ['multipart/form-data', 'application/x-www-form-urlencoded'].includes(plain(media));
    if (!isForm) return [['body', this.wholeKind(media, schema), 'body', schema, given]];
    const fields = [...this.fields(schema)].map(([name, field]) => {
      const target = this.target(field);
      const isBare = this.is31 && plain(media) === 'multipart/form-data' && target &&
        typeof target === 'object' && Object.keys(target).length === 0;
      return [name, isBare ? 'upload' : this.kind(field), 'body', field];
    });
    const isMap = fields.length === 0 && schema && plain(media) !== 'multipart/form-data' && this.kind(schema) === 'map';
    return isMap ? [['body', 'map', 'body', schema, given]] : fields;
  }

  wholeKind(media, schema) {
    if (schema && this.isBytes(schema)) return 'upload';
    if (this.isJson(media)) return schema === undefined ? 'any' : this.kind(schema);
    if (!/^text\/|(xml|yaml|javascript|graphql)$/.test(media.split(';')[0].trim().toLowerCase())) return 'upload';
    const kind = schema ? this.kind(schema) : 'string';
    return ['string', 'integer', 'int64', 'boolean', 'float', 'date-time', 'date'].includes(kind) ? kind : 'string';
  }

  /// Name, kind, schema and what may hold examples of each top-level property of the request.
  properties(oper, path, template) {
    const params = new Map();
    for (const given of [...(path.parameters ?? []), ...(oper.parameters ?? [])]) {
      const param = this.target(given);
      if (param?.name && param.in) params.set(param.in + ' ' + param.name, param);
    }
    const found = [];
    for (const param of params.values()) {
      if (!['path', 'query', 'header', 'cookie'].includes(param.in)) continue;
      if (param.in === 'path' && !template.includes('{' + param.name + '}')) continue;
      if (param.in === 'header' && !this.isSwagger &&
          ['accept', 'content-type', 'authorization'].includes(param.name.toLowerCase())) continue;
      const schema = this.isSwagger ? param
        : param.content ? Object.values(param.content)[0]?.schema : param.schema;
      found.push([param.name, schema === undefined ? 'string' : this.kind(schema), param.in, schema, param]);
    }
    for (const [, name] of template.matchAll(/\{([^{}]*)\}/g))
      if (!params.has('path ' + name)) found.push([name, 'string', 'path']);
    found.push(...this.bodyProperties(oper, path));
    const names = new Set();
    return found.map(([name, kind, place, schema, given]) => {
      let own = names.has(name) ? name + '_' + place : name;
      for (let i = 2; names.has(own); ++i) own = name + '_' + place + i;
      names.add(own);
      return { name: own, kind, schema, given };
    });
  }

  responseKind(oper) {
    const responses = oper.responses ?? {};
    // JavaScript sorts keys that are numbers; the documents have them in this order, too.
    const codes = Object.keys(responses).filter(code => code.startsWith('2'));
    let other = null;
    for (const code of codes.length ? codes : responses.default ? ['default'] : []) {
      const response = this.target(responses[code]);
      const [kind, isJson] = this.isSwagger ? this.swaggerResponse(oper, response) : this.oneResponse(response);
      if (isJson) return kind;
      other ??= kind;
    }
    return other ?? 'none';
  }

  oneResponse(response) {
    const content = Object.entries(response?.content ?? {});
    for (const [media, { schema }] of content)
      if (this.isJson(media) && !(schema && this.isBytes(schema))) return [schema === undefined ? 'any' : this.kind(schema), true];
    return [content.length ? 'download' : null, false];
  }

  swaggerResponse(oper, response) {
    if (response?.schema === undefined) return [null, false];
    const produces = oper.produces ?? this.root.produces ?? [];
    const isJson = (produces.length === 0 || produces.some(m => this.isJson(m))) && !this.isBytes(response.schema);
    return isJson ? [this.kind(response.schema), true] : ['download', false];
  }

  operations() {
    const operations = [];
    const names = new Set();
    for (const [template, given] of Object.entries(this.root.paths ?? {})) {
      const path = this.target(given) ?? {};
      if (template.startsWith('x-')) continue;
      for (const [method, givenOper] of Object.entries(path)) {
        const oper = methods.includes(method) ? this.target(givenOper) : undefined;
        if (!oper) continue;
        const plain = method.toUpperCase() + ' ' + template;
        const name = oper.operationId && !names.has(oper.operationId) ? oper.operationId : plain;
        names.add(name);
        operations.push({ name, method: method.toUpperCase(), template, oper,
          properties: this.properties(oper, path, template), response: this.responseKind(oper) });
      }
    }
    return operations;
  }

  describe() {
    const operations = this.operations().map(o => [o.name, o.method, o.template, '|',
      ...o.properties.map(p => p.name + ':' + p.kind), '|', o.response].join(' '));
    const schemas = this.isSwagger ? this.root.definitions : this.root.components?.schemas;
    return { title: String(this.root.info?.title ?? '').split(/\s+/).filter(Boolean).join(' '),
      version: String(this.root.info?.version ?? ''), types: Object.keys(schemas ?? {}).length, operations };
  }
}

if (process.argv[1] === fileURLToPath(import.meta.url))
  for (const file of process.argv.slice(2)) console.log(JSON.stringify(new Document(file).describe()));
