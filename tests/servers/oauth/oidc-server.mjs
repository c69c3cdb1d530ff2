// A certified authorization server with an API behind it, on one free port of 127.0.0.1, and the switches that
// tests turn: node oidc-server.mjs NPM_FOLDER
import http from "node:http";
import { once } from "node:events";
import { pathToFileURL } from "node:url";

const npm = process.argv[2];
console.warn = console.info = () => {};
const { default: Provider } = await import(pathToFileURL(`${npm}/node_modules/oidc-provider/lib/index.js`));

const server = http.createServer();
server.listen(0, "127.0.0.1");
await once(server, "listening");
const origin = `http://127.0.0.1:${server.address().port}`;

const state = { lifetime: 3600, refuseApi: false, refuseRefresh: false, failRefresh: false };
let log = [];

const secret = "the-s3cret-of-a-test+/=";
const client = (id, method, more = {}) => ({
    client_id: id,
    ...(method === "none" ? {} : { client_secret: secret }),
    token_endpoint_auth_method: method,
    application_type: "native",
    redirect_uris: ["http://127.0.0.1/callback"],
    grant_types: ["authorization_code", "refresh_token", ...(method === "none" ? [] : ["client_credentials"])],
    ...more,
});
const provider = new Provider(origin, {
    clients: [
        client("native", "none"), client("basic", "client_secret_basic"), client("post", "client_secret_post"),
    ],
    scopes: ["openid", "offline_access", "read", "write"],
    pkce: { required: () => true, methods: ["S256"] },
    rotateRefreshToken: true,
    issueRefreshToken: async (context, owner) => owner.grantTypeAllowed("refresh_token"),
    features: { clientCredentials: { enabled: true }, devInteractions: { enabled: true } },
    ttl: {
        AccessToken: () => state.lifetime, ClientCredentials: () => state.lifetime, RefreshToken: 86400, Grant: 86400,
        Session: 86400, Interaction: 600,
    },
    cookies: { keys: ["one key of a test"] },
});
provider.on("authorization.success", (context) => log.push(`consent ${context.oidc.params.scope ?? ""}`));
provider.on("grant.success", (context) => log.push(`token ${context.oidc.params.grant_type}`));
provider.on("grant.error", (context, error) => log.push(`refused ${error.error}`));

async function answerApi(request, response) {
    const token = (request.headers.authorization ?? "").replace(/^Bearer /, "");
    const found = (await provider.AccessToken.find(token)) ?? (await provider.ClientCredentials.find(token));
    if (!found || found.isExpired || state.refuseApi) {
        log.push("api 401");
        response.writeHead(401, { "WWW-Authenticate": 'Bearer error="invalid_token"', "Content-Type": "text/plain" });
        response.end("This token is not taken.");
        return;
    }
    log.push("api 200");
    response.writeHead(200, { "Content-Type": "application/json" });
    response.end(JSON.stringify({ client: found.clientId, scope: found.scope ?? "" }));
}

function answerSwitch(url, response) {
    for (const [name, value] of url.searchParams)
        state[name] = JSON.parse(value);
    response.end(log.join("\n"));
    log = [];
}

const answerOidc = provider.callback();
server.on("request", (request, response) => {
    const url = new URL(request.url, origin);
    if (url.pathname === "/api") {
        answerApi(request, response);
    } else if (url.pathname === "/switch") {
        answerSwitch(url, response);
    } else if (url.pathname === "/token" && (state.refuseRefresh || state.failRefresh)) {
        let body = "";
        request.on("data", (bytes) => (body += bytes));
        request.on("end", () => {
            const isRefresh = new URLSearchParams(body).get("grant_type") === "refresh_token";
            if (isRefresh && state.failRefresh) {
                log.push("failed");
                response.writeHead(503, { "Content-Type": "text/html" });
                response.end("<h1>Sorry</h1>");
                return;
            }
            if (isRefresh)
                body = body.replace(/refresh_token=[^&]+/g, (text) => `${text}-not`)
                    .replace("grant_type=refresh_token-not", "grant_type=refresh_token");
            request.body = body;
            answerOidc(request, response);
        });
    } else {
        answerOidc(request, response);
    }
});
console.log(`Listening at: ${origin}`);
