"""Changes one thing at a time in the product and says which changes no test notices."""
