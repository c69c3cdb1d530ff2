// Another authorization server, which agrees to everything: node mock-server.mjs NPM_FOLDER
import { createRequire } from "node:module";

const npm = process.argv[2];
const require = createRequire(`${npm}/package.json`);
const { OAuth2Server } = require("oauth2-mock-server");

const server = new OAuth2Server();
await server.issuer.keys.generate("RS256");
await server.start(0, "127.0.0.1");
server.issuer.url = `http://127.0.0.1:${server.address().port}`;
console.log(`Listening at: ${server.issuer.url}`);
