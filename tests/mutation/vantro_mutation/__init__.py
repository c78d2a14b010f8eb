"""Makes one change at a time in the product and reports the changes that no test notices."""
