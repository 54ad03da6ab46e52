// Binary search, for all that lies in order.

/** The first of the whole numbers below `count` from which on `isThere` holds; `count` without one. */
export function firstWhere(count, isThere) {
    let low = 0;
    let high = count;
    while (low < high) {
        const middle = (low + high) >> 1;
        if (isThere(middle)) high = middle;
        else low = middle + 1;
    }
    return low;
}
