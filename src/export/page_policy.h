#pragma once

/// What stands in the head of every page, before anything out of a backup: an element that lets no script run
/// and nothing be loaded or sent. A style within the page and a picture within its text do no harm.
inline constexpr char inertPage[] =
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'unsafe-inline'; "
    "img-src data:; base-uri 'none'; form-action 'none'\" />";

/// The same for a page that shows pictures and uses a style sheet of the folder in which it lies. Not every
/// browser takes the files beside a page for its own, so files have to be named.
inline constexpr char pageWithFiles[] =
    "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src 'self' file: "
    "'unsafe-inline'; img-src 'self' file: data:; base-uri 'none'; form-action 'none'\" />";
