// Holds nothing but the headers that the other targets share.
