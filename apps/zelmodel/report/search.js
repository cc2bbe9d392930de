// The search box: without this script the report has none and misses nothing else.
(() => {
    "use strict";

    const mostShown = 50;
    const place = document.getElementById("search");
    let index = null;
    let isAsked = false;

    const make = (tag, attributes, parent) => {
        const element = document.createElement(tag);
        for (const [name, value] of Object.entries(attributes))
            element.setAttribute(name, value);
        parent.append(element);
        return element;
    };

    place.setAttribute("role", "search");
    const label = make("label", { for: "query" }, place);
    label.textContent = "Search all records";
    const input = make("input", {
        id: "query", type: "search", placeholder: "Search", autocomplete: "off",
        spellcheck: "false", "aria-controls": "found"
    }, place);
    const found = make("div", { id: "found", class: "found", hidden: "" }, place);
    const count = make("p", { "aria-live": "polite" }, found);
    const list = make("ol", {}, found);

    // Called by search-index.js, which is large and fetched only by those who search.
    window.zelReport = (data) => {
        index = data;
        index.texts = data.records.map((record) => record.slice(3).join("\n").toLowerCase());
        search();
    };

    const ask = () => {
        if (!isAsked)
            make("script", { src: "search-index.js" }, document.head);
        isAsked = true;
    };

    const pageOf = (chapter, part) =>
        index.chapters[chapter] + (part > 0 ? "-" + (part + 1) : "") + ".html";

    // Whole names first, then beginnings of names, then the rest, each in the order of the report.
    const rank = (record, query) => {
        const title = record[4].toLowerCase();
        if (title === query || record[3] === query)
            return 0;
        return title.startsWith(query) ? 1 : 2;
    };

    const matches = (query) => {
        const words = query.split(/\s+/);
        const ranked = [[], [], []];
        index.texts.forEach((text, i) => {
            if (words.every((word) => text.includes(word)))
                ranked[rank(index.records[i], query)].push(index.records[i]);
        });
        return ranked.flat();
    };

    const show = (records) => {
        list.replaceChildren();
        for (const [chapter, part, kind, key, title, text] of records.slice(0, mostShown)) {
            const link = make("a", { href: pageOf(chapter, part) + "#" + key }, make("li", {}, list));
            make("bdi", {}, link).textContent = title || key;
            const about = make("span", {}, link);
            about.textContent = index.kinds[kind] + (text ? " \u00b7 " : "");
            make("bdi", {}, about).textContent = text;
        }
        count.textContent = records.length === 0 ? "Nothing found"
            : records.length > mostShown ? records.length + " found, the first " + mostShown + ":"
            : records.length + " found";
    };

    const search = () => {
        const query = input.value.trim().toLowerCase();
        found.hidden = query === "";
        if (query === "")
            return;
        ask();
        if (index)
            show(matches(query));
        else
            count.textContent = "Loading";
    };

    const close = () => {
        found.hidden = true;
    };

    input.addEventListener("focus", ask);
    input.addEventListener("input", search);
    place.addEventListener("keydown", (event) => {
        const links = [...list.querySelectorAll("a")];
        const at = links.indexOf(document.activeElement);
        if (event.key === "Escape") {
            input.value = "";
            close();
            input.focus();
        } else if (event.key === "ArrowDown" && at + 1 < links.length) {
            links[at + 1].focus();
        } else if (event.key === "ArrowUp" && at >= 0) {
            (at > 0 ? links[at - 1] : input).focus();
        } else if (event.key === "Enter" && document.activeElement === input && links.length > 0) {
            links[0].click();
        } else {
            return;
        }
        event.preventDefault();
    });
    list.addEventListener("click", close);
    document.addEventListener("pointerdown", (event) => {
        if (!place.contains(event.target))
            close();
    });
    document.addEventListener("keydown", (event) => {
        if (event.key === "/" && !/^(INPUT|TEXTAREA)$/.test(document.activeElement.tagName)) {
            event.preventDefault();
            input.focus();
        }
    });
})();
