// Signs on and consents in place of a person, or does what ZO_TEST_PERSON says: "deny", "leave" (never comes back),
// "twice" (answers a second time), "forge" (answers with a state of its own). node person.mjs URL
const mode = process.env.ZO_TEST_PERSON ?? "consent";
const cookies = new Map();
const forms = { login: { prompt: "login", login: "somebody", password: "anything" }, consent: { prompt: "consent" } };

async function visit(url, options = {}) {
    const headers = { cookie: [...cookies].map(([name, value]) => `${name}=${value}`).join("; "), ...options.headers };
    const response = await fetch(url, { ...options, headers, redirect: "manual" });
    // Node 18 has them in one line only; the comma of a date has no name behind it.
    const lines = response.headers.get("set-cookie")?.split(/, (?=[^;, ]+=)/) ?? [];
    for (const cookie of lines) {
        const [, name, value] = /^([^=]+)=([^;]*)/.exec(cookie);
        if (value === "") cookies.delete(name);
        else cookies.set(name, value);
    }
    return response;
}

async function comeBack(url) {
    if (mode === "leave")
        return;
    if (mode === "forge")
        url = url.replace(/state=[^&]+/, "state=forged");
    const page = await fetch(url);
    console.log(page.status, await page.text());
    if (mode === "twice")
        await fetch(url).then((second) => console.log(second.status), () => console.log("nobody listens any more"));
}

let url = process.argv[2];
let response = await visit(url);
for (let step = 0; step < 20; ++step) {
    const location = response.headers.get("location");
    if (location) {
        url = new URL(location, url).href;
        if (new URL(url).pathname === "/callback") {
            await comeBack(url);
            break;
        }
        response = await visit(url);
        continue;
    }
    const text = await response.text();
    const prompt = /name="prompt" value="(\w+)"/.exec(text)?.[1];
    if (!prompt) {
        console.log(response.status, text);
        break;
    }
    if (mode === "deny") {
        url = new URL(/href="([^"]+\/abort)"/.exec(text)[1], url).href;
        response = await visit(url);
        continue;
    }
    url = new URL(/<form[^>]*action="([^"]+)"/.exec(text)[1], url).href;
    response = await visit(url, {
        method: "POST", body: new URLSearchParams(forms[prompt]).toString(),
        headers: { "content-type": "application/x-www-form-urlencoded" },
    });
}
